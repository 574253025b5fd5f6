// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// pnotool: makes panorama files and looks into them.
#include "companions/pnotool/Arguments.h"
#include "companions/pnotool/ClearOnSignal.h"
#include "companions/pnotool/Commands.h"
#include "companions/pnotool/Usage.h"
#include "project/LocalText.h"

#include <QCoreApplication>

#include <algorithm>
#include <clocale>
#include <cstdio>
#include <map>

int main(int argc, char** argv)
{
    pnotool::ClearOnSignal::prepareProcess();
    const QCoreApplication application(argc, argv);
    localtext::useSystemEncoding();
    std::setlocale(LC_NUMERIC, "C"); // the toolkit takes the user's; numbers here have a decimal point

    static const std::map<std::string, int (*)(const pnotool::Words&)> kCommands = {
        {"make", pnotool::makeCommand},   {"info", pnotool::infoCommand},
        {"image", pnotool::imageCommand}, {"tile", pnotool::tileCommand},
        {"range", pnotool::rangeCommand}, {"thumbnail", pnotool::thumbnailCommand}};
    pnotool::Words words(argv + 1, argv + argc);
    if (words.empty()) return pnotool::wrongUsage("there is nothing to do");
    if (std::find(words.begin(), words.end(), "--help") != words.end() || words[0] == "-h" ||
        words[0] == "help") {
        std::fputs(pnotool::kUsage, stdout);
        return pnotool::kDone;
    }
    const auto command = kCommands.find(words[0]);
    if (command == kCommands.end()) return pnotool::wrongUsage("\"" + words[0] + "\" is not a command");
    words.erase(words.begin());
    return command->second(words);
}
