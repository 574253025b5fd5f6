// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Cutting points away in the view: box, icon, question, file.

#include "tests/views/cloud/CloudViewFixture.h"
#include "tests/views/cloud/FailingDisk.h"
#include "tests/views/cloud/ProjectionAnew.h"

#include <QFile>

using testing::InSequence;
using testing::Return;

class CloudDeletion : public CloudViewFixture
{
protected:
    void showCloud()
    {
        bytes.originX = 30000;
        bytes.originY = 20000;
        bytes.points = CloudBytes::randomPoints(20000, 500, 400, 120);
        show();
        load();
        Probe::look(*view, {0.5, 0.6, 0.8, -0.3, 0.2, 0});
        ON_CALL(owner, confirmPointDeletion()).WillByDefault(Return(true));
    }

    /// The points that a projection written anew leaves outside of the box.
    std::vector<CloudDot> outside(const QRect& box) const
    {
        std::vector<CloudDot> rest;
        for (const CloudDot& dot : bytes.points) {
            const auto place =
                anew::place({(dot.x + 0.5) / 100 - 3, (dot.y + 0.5) / 100 - 2, (dot.z + 0.5) / 100},
                            Probe::camera(*view), Probe::size(*view));
            if (!box.contains(int(std::trunc(place.x)), int(std::trunc(place.y)))) rest.push_back(dot);
        }
        return rest;
    }

    static inline const QPoint kFrom{180, 140}, kTo{330, 290};
};

TEST_F(CloudDeletion, TheBoxedPointsGoAndTheFileHoldsTheOthers)
{
    showCloud();
    click(kBoxIcon);
    drag(kFrom, kTo);
    const auto expected = outside(QRect(kFrom, kTo));
    ASSERT_LT(expected.size(), bytes.points.size() - 1000);
    {
        const InSequence inSequence;
        EXPECT_CALL(owner, confirmPointDeletion()).WillOnce(Return(true));
        // The library finds the whole file, before the view reads what it may have changed.
        EXPECT_CALL(owner, pointCloudRewritten(path())).WillOnce([&](const QString& rewritten) {
            EXPECT_EQ(dotsOf(readBytes(rewritten)).size(), expected.size());
        });
    }
    click(kDeleteIcon);

    CloudBytes rest = bytes;
    rest.points = expected;
    EXPECT_EQ(readBytes(path()), rest.file());
    EXPECT_EQ(Probe::heldPoints(*view), expected.size());
    EXPECT_TRUE(Probe::loaded(*view));
    EXPECT_TRUE(Probe::boxMode(*view));
    EXPECT_EQ(Probe::selection(*view), QRect(-1, -1, 0, 0));
    EXPECT_EQ(Probe::camera(*view).zoom, 0.8);
    const QImage picture = frame();
    const int scale = qRound(picture.devicePixelRatio());
    const QImage inside = picture.copy(QRect((kFrom + QPoint(2, 2)) * scale, (kTo - QPoint(2, 2)) * scale));
    EXPECT_EQ(countOf(inside, Qt::black), inside.width() * inside.height());
}

TEST_F(CloudDeletion, ABoxDrawnFromBottomRightToTopLeftDeletesTheSamePoints)
{
    showCloud();
    click(kBoxIcon);
    drag(kTo, kFrom);
    click(kDeleteIcon);
    CloudBytes rest = bytes;
    rest.points = outside(QRect(kFrom, kTo));
    EXPECT_EQ(readBytes(path()), rest.file());
}

TEST_F(CloudDeletion, AnEmptySelectionRewritesTheFileUnchangedAndReloadsIt)
{
    showCloud();
    click(kBoxIcon);
    EXPECT_CALL(owner, pointCloudRewritten(path())).Times(1);
    ASSERT_TRUE(QFile::resize(path(), 0)); // so that only a rewrite brings it back
    click(kDeleteIcon);
    EXPECT_EQ(readBytes(path()), bytes.file());
    EXPECT_TRUE(Probe::loaded(*view));
    EXPECT_EQ(Probe::heldPoints(*view), bytes.points.size());
}

TEST_F(CloudDeletion, NoKeepsPointsAndSelection)
{
    showCloud();
    click(kBoxIcon);
    drag(kFrom, kTo);
    EXPECT_CALL(owner, confirmPointDeletion()).WillOnce(Return(false));
    EXPECT_CALL(owner, pointCloudRewritten).Times(0);
    click(kDeleteIcon);
    EXPECT_EQ(readBytes(path()), bytes.file());
    EXPECT_EQ(Probe::heldPoints(*view), bytes.points.size());
    EXPECT_EQ(Probe::selection(*view).topLeft(), kFrom);
}

TEST_F(CloudDeletion, OutsideBoxModeTheIconAsksButDeletesNothing)
{
    showCloud();
    EXPECT_CALL(owner, confirmPointDeletion()).WillOnce(Return(true));
    EXPECT_CALL(owner, pointCloudRewritten).Times(0);
    click(kDeleteIcon);
    EXPECT_EQ(Probe::heldPoints(*view), bytes.points.size());
}

TEST_F(CloudDeletion, AllPointsMayGo)
{
    showCloud();
    Probe::look(*view, {0, 0, 0.5, -0.5, 0, 0});
    click(kBoxIcon);
    drag({5, 60}, {540, 460});
    click(kDeleteIcon);
    EXPECT_EQ(readBytes(path()).size(), 56);
    EXPECT_TRUE(Probe::loaded(*view));
    EXPECT_EQ(countOf(frame(), kGrey), 0);
    // And a second time, with none left.
    click(kDeleteIcon);
    EXPECT_EQ(readBytes(path()).size(), 56);
}

TEST_F(CloudDeletion, AFailedWriteIsSilentAndLeavesTheFileWhole)
{
    showCloud();
    const QImage before = frame();
    click(kBoxIcon);
    drag(kFrom, kTo);
    const auto expected = outside(QRect(kFrom, kTo));
    EXPECT_CALL(owner, pointCloudRewritten).Times(0);
    {
        const FailingDisk disk(10000);
        click(kDeleteIcon);
    }
    EXPECT_EQ(readBytes(path()), bytes.file());
    EXPECT_TRUE(Probe::loaded(*view));
    EXPECT_EQ(Probe::heldPoints(*view), expected.size()); // the held data keeps the new count
    // The picture is still the old one.
    click(kBoxIcon);
    EXPECT_EQ(frame(), before);

    // Once the disk takes the file, the earlier deletion is in it as well.
    testing::Mock::VerifyAndClearExpectations(&owner);
    ON_CALL(owner, confirmPointDeletion()).WillByDefault(Return(true));
    click(kBoxIcon);
    EXPECT_CALL(owner, pointCloudRewritten(path())).Times(1);
    click(kDeleteIcon);
    EXPECT_EQ(dotsOf(readBytes(path())), expected);
}

TEST_F(CloudDeletion, AfterARefusedFileThereIsNothingToDelete)
{
    showCloud();
    click(kBoxIcon);
    load(bytes.file() + 'x');
    EXPECT_CALL(owner, pointCloudRewritten).Times(0);
    view->DeleteSelectedPoints();
    EXPECT_EQ(readBytes(path()), bytes.file() + 'x');
}
