// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "tests/publish/support/Tours.h"

#include <cstring>

void fillTour(RoamProject& project, int panoramas, int links)
{
    for (int i = 0; i < panoramas; ++i) {
        auto node = std::make_unique<PanoNode>();
        std::memset(node->parameters.identity, 'A' + i, 14);
        project.panoramas.push_back(std::move(node));
    }
    for (int i = 0; i < links; ++i) {
        auto link = std::make_unique<PanoLink>();
        std::memset(link->name_0, 'A' + i, 14);
        std::memset(link->name_1, 'A' + i + 1, 14);
        project.links.push_back(std::move(link));
    }
}
