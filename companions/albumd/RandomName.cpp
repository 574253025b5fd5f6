// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/albumd/RandomName.h"

#include <sodium.h>

namespace albumd {

std::string randomLetters(int count)
{
    std::string text;
    for (int i = 0; i < count; ++i) {
        const std::uint32_t letter = randombytes_uniform(52);
        text += static_cast<char>(letter < 26 ? 'A' + letter : 'a' + (letter - 26));
    }
    return text;
}

} // namespace albumd
