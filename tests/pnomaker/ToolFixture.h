// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "linking/pno/PnoFile.h"
#include "tests/pnomaker/JpegFiles.h"
#include "tests/pnomaker/Metadata.h"
#include "tests/pnomaker/PictureFiles.h"
#include "tests/pnomaker/Pictures.h"
#include "tests/pnomaker/Readback.h"
#include "tests/pnomaker/ToolRun.h"
#include "tests/support/TestFiles.h"

#include <filesystem>
#include <gmock/gmock.h>

namespace pnotest {

/// Folder with pictures and panoramas of a test.
struct PnoTool : testing::Test
{
    TemporaryFolder folder;

    std::string picture(const std::string& name, PaintedPicture painted = gradient(512, 256),
                        const JpegForm& form = {})
    {
        folder.write(name, {});
        EXPECT_TRUE(writeJpeg(folder.path(name), painted, form));
        return folder.path(name);
    }

    std::unique_ptr<PnoFile> open(const std::string& path)
    {
        auto file = std::make_unique<PnoFile>();
        EXPECT_EQ(file->Open(path.c_str()), pno::Ok) << path;
        return file;
    }

    /// Makes a panorama and opens it.
    std::unique_ptr<PnoFile> made(std::vector<std::string> words)
    {
        words.insert(words.begin(), "make");
        words.insert(words.end(), {"--out", folder.path("made.pno")});
        const ToolRun run = runTool(words);
        EXPECT_EQ(run.status, 0) << run.err;
        EXPECT_THAT(run.out, testing::StartsWith(folder.path("made.pno") + ": id "));
        EXPECT_EQ(run.err, "");
        return open(folder.path("made.pno"));
    }

    /// Expects a refusal in one line, and nothing left of the output.
    void expectRefused(std::vector<std::string> words, const std::string& why, int status = 1)
    {
        words.insert(words.begin(), "make");
        words.insert(words.end(), {"--out", folder.path("refused.pno")});
        const ToolRun run = runTool(words);
        EXPECT_EQ(run.status, status) << run.err;
        EXPECT_THAT(run.err, testing::HasSubstr(why));
        EXPECT_THAT(run.err, testing::StartsWith("pnotool: "));
        EXPECT_EQ(run.err.find('\n'), run.err.size() - 1) << run.err;
        EXPECT_EQ(run.out, "");
        for (const std::string& name : folderEntries(folder.path("")))
            EXPECT_FALSE(name.find("refused.pno") == 0) << name;
    }
};

} // namespace pnotest
