#include "helmkit/format_message.h"

namespace helmkit {

std::wstring formatMessage(std::wstring_view text, const std::vector<std::wstring>& arguments) {
    std::wstring result;
    for (size_t i = 0; i < text.size(); ++i) {
        bool isPlaceholder =
            text[i] == L'%' && i + 1 < text.size() && text[i + 1] >= L'1' && text[i + 1] <= L'9';
        if (isPlaceholder && static_cast<size_t>(text[i + 1] - L'1') < arguments.size()) {
            result += arguments[text[++i] - L'1'];
        } else {
            result += text[i];
        }
    }
    return result;
}

}  // namespace helmkit
