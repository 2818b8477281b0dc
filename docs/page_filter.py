"""Prints a page as doxygen wants it: with a label at each section, links to these labels, and without
the folders of pictures and headers, which it finds by name: page_filter.py PAGE"""
import pathlib
import re
import sys

page = pathlib.Path(sys.argv[1])


def labelled(heading):
    words = re.sub(r"[^\w -]", "", heading[1].lower()).replace(" ", "-")  # as forges make them
    return f"{heading[0]} {{#{page.stem}-{words}}}"


text = page.read_text()
if page.name != "README.md":  # the tree would show the sections of the first page among the pages
    text = re.sub(r"^##+ (.*)$", labelled, text, flags=re.MULTILINE)
text = re.sub(r"\]\([\w./]*?(\w+)\.md#([\w-]+)\)", r"](@ref \1-\2)", text)
text = re.sub(r"\]\([\w./]*/(\w+\.svg)\)", r"](\1)", text)
print(re.sub(r"\]\(include/CommonAPI/", "](@ref ", text), end="")
