// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/lumiscope/Viewer.h"
#include "project/LocalText.h"

int main(int argc, char** argv)
{
    localtext::useSystemEncoding();
    return runViewer(argc, argv);
}
