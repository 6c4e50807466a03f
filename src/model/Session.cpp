#include "model/Session.h"

namespace morvanta {

std::string FixedText(std::string text, std::size_t width) {
    if (text.size() > width) text.resize(width);
    return text;
}

}  // namespace morvanta
