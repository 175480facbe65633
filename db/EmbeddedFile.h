#pragma once
#include <string>

namespace qx {

// A text file compiled into a library (see cmake/EmbedText.cmake).
struct EmbeddedFile {
    std::string name;
    std::string text;
};

}  // namespace qx
