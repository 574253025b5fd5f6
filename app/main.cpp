// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "app/StartUp.h"
#include "project/LocalText.h"

int main(int argc, char** argv)
{
    localtext::useSystemEncoding();
    return runTourwright(argc, argv);
}
