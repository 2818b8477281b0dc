#include <CommonAPI/paper_size.h>

#include <fstream>
#include <iostream>
#include <list>
#include <sstream>
#include <string>

int main(int count, char** arguments) {
    std::list<PaperSizeData> records;  // a list: a record must stay where it is
    PaperSize sizes;
    std::ifstream file(count > 1 ? arguments[1] : "examples/media.tsv");
    for (std::string line; std::getline(file, line);) {
        if (line.empty() || line[0] == '#')
            continue;
        PaperSizeData& data = records.emplace_back();
        std::istringstream fields(line);
        std::getline(fields, data.name, '\t');
        fields >> data.widthPts >> data.heightPts >> data.widthMM >> data.heightMM;
        sizes.addPaperSizeToList(&data);
    }

    for (char const* const name : {"A4", "JIS B5", "Letter", "Papyrus"}) {
        int width;
        int height;
        if (sizes.getPaperSizeInPts(name, width, height))
            std::cout << name << " is " << width << " by " << height << " points\n";
        else
            std::cout << name << " is unknown\n";
    }
}
