// The tables of strings in a version resource: which there are, and in which order to ask them.
//
// Real files name a table in their translations and hold another, hold several of which some are blank, or
// name none at all, so the block itself is walked as well. Format: VS_VERSIONINFO of the Windows API.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace win32 {

// The keys of the string tables ("040904b0", also odd ones such as "FFFF0000") in the block's order. Of a
// block that is not well formed, what comes before the fault; no key of a table is longer than 64 characters.
std::vector<std::wstring> stringTableKeys(std::string_view block);

struct Translation {
    uint16_t language;
    uint16_t codePage;
};

// Four bytes each; an incomplete last one is left out.
std::vector<Translation> translationsOf(std::string_view bytes);

// The tables in the order to ask them, none twice: the translations (those of the user's language first), the
// same languages with other code pages, English, neutral, and last the tables found by walking. A block can
// name thousands: of the translations, in this order, and of the tables walked to, 100 each are taken.
std::vector<std::wstring> tableOrder(std::vector<Translation> translations, uint16_t userLanguage,
                                     const std::vector<std::wstring>& walked);

}  // namespace win32
