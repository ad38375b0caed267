#include "helmkit/format_message.h"

namespace helmkit {

std::wstring formatMessage(std::wstring_view text, const std::vector<std::wstring>& arguments) {
    std::wstring result;
    for (size_t i = 0; i < text.size(); ++i) {
        bool isPlaceholder =
            text[i] == L'%' && i + 1 < text.size() && text[i + 1] >= L'1' && text[i + 1] <= L'9';
        size_t position = isPlaceholder ? text[i + 1] - L'1' : 0;
        if (isPlaceholder && position < arguments.size()) {
            result += arguments[position];
            ++i;
        } else {
            result += text[i];
        }
    }
    return result;
}

}  // namespace helmkit
