#include <CommonAPI/paper_size.h>

#include <exception>
#include <iostream>
#include <vector>

#include "files.h"

int main(int count, char** arguments) try {
    if (count != 2)
        throw std::invalid_argument("needs a file of paper sizes, such as examples/media.tsv");
    std::vector<PaperSizeData> const records = ReadPaperSizes(arguments[1]);
    PaperSize sizes;
    for (PaperSizeData const& data : records)  // each stays where it is as long as it is listed
        sizes.addPaperSizeToList(&data);

    for (char const* const name : {"A4", "JIS B5", "Letter", "Papyrus"}) {
        int width;
        int height;
        if (sizes.getPaperSizeInPts(name, width, height))
            std::cout << name << " is " << width << " by " << height << " points\n";
        else
            std::cout << name << " is unknown\n";
    }
} catch (std::exception const& failure) {
    std::cerr << "paper_sizes: " << failure.what() << '\n';
    return 1;
}
