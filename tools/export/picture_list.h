// All pictures of a document as its lists offer them, and what the file of each is called.
#pragma once

#include "display/display_image.h"

#include <string>
#include <vector>

class PictureNames;

struct ListedPicture {
    Selection selection;
    std::string layer;    // name in the Layer list, as bytes
    std::string channel;  // likewise in the Channel list
    std::string file;     // name of the picture's file, without a folder
};

// The names do not depend on which of the pictures are wanted. strName: of the document's file, without a
// folder.
std::vector<ListedPicture> ListPictures(const CVistrelDoc& document, const std::string& strName,
                                        PictureNames& names);
