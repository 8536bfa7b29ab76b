// The image shape: the picture stretched into its frame and turned with it,
// the effects, mirroring and transparency on pixels, the border and the
// placeholder, the cached picture following every change, copies, and images
// added by code with their undo.
#include "cad/canvas/mycad.h"
#include "cad/shapes/image.h"
#include "support/shapes.h"
#include "support/test_support.h"
#include "text_printers.h"

#include <gtest/gtest.h>

#include <numbers>

using namespace faroven;
using namespace faroven::test;

namespace {

// 8 x 6 pixels: the top-left quarter red, the rest blue.
std::unique_ptr<TBitmap> Quarters() {
    auto bmp = FilledBitmap(8, 6, clBlue, pf24bit);
    bmp->Canvas()->Brush()->SetColor(clRed);
    bmp->Canvas()->FillRect(Rect(0, 0, 4, 3));
    return bmp;
}

class Image : public ::testing::Test {
protected:
    void SetUp() override { cad.GridOperation()->SetGridShow(false); }
    // The quarters picture in a frame twice its size at (20, 20).
    TMyImage* add() {
        auto img = AddRect<TMyImage>(cad, 20, 20, 36, 32);
        img->SetBitmap(*Quarters());
        return img;
    }
    TMyCAD cad;
};

TEST_F(Image, PictureIsStretchedIntoTheFrameAtEveryZoom) {
    add();
    QImage image = cad.PaintToImage();
    EXPECT_EQ(InkBounds(image, clRed), Rect(20, 20, 28, 26)) << Ascii(image.copy(16, 16, 24, 20), clRed);
    EXPECT_EQ(InkBounds(image, clBlue), Rect(20, 20, 36, 32));
    cad.SetZoom(2);
    image = cad.PaintToImage();
    EXPECT_EQ(InkBounds(image, clRed), Rect(40, 40, 56, 52)) << "the picture follows the zoom";
    EXPECT_EQ(InkBounds(image, clBlue), Rect(40, 40, 72, 64));
}

TEST_F(Image, MirroringAndTurningMoveTheQuarter) {
    TMyImage* img = add();
    img->FlipHoriz();
    EXPECT_EQ(InkBounds(cad.PaintToImage(), clRed), Rect(28, 20, 36, 26));
    img->SetIsFlipVert(true);  // the flag alone mirrors the picture
    EXPECT_EQ(InkBounds(cad.PaintToImage(), clRed), Rect(28, 26, 36, 32));
    img->SetIsFlipHorz(false);
    img->SetIsFlipVert(false);
    // A quarter turn clockwise about (28, 26): the frame becomes 12 x 16 and
    // the top-left quarter goes to the top right.
    img->RotateChangeValueByAngle(std::numbers::pi / 2);
    const QImage image = cad.PaintToImage();
    EXPECT_EQ(InkBounds(image, clBlue), Rect(22, 18, 34, 34));
    EXPECT_EQ(InkBounds(image, clRed), Rect(28, 18, 34, 26)) << Ascii(image.copy(18, 14, 20, 24), clRed);
    EXPECT_EQ(CountPixels(image, clRed), 6 * 8);
}

TEST_F(Image, TransparentColourLetsTheBackgroundShow) {
    TMyImage* img = add();
    img->SetTransparent(true);
    img->SetTransparentMode(tmFixed);
    img->SetTransparentColor(clRed);
    QImage image = cad.PaintToImage();
    EXPECT_EQ(CountPixels(image, clRed), 0);
    EXPECT_EQ(PixelAt(image, 21, 21), clWhite);
    EXPECT_EQ(PixelAt(image, 30, 30), clBlue);
    img->SetTransparentMode(tmAuto);  // the bottom-left pixel: blue
    img->SetGrayScale(true);          // compared before the effects
    image = cad.PaintToImage();
    EXPECT_EQ(InkBoundsExcept(image, clWhite), Rect(20, 20, 28, 26));
    EXPECT_EQ(PixelAt(image, 30, 30), clWhite);
    img->RotateChangeValueByAngle(0.5);
    image = cad.PaintToImage();
    EXPECT_EQ(CountPixels(image, clBlack), 0) << "corners uncovered by the turn are not drawn";
}

TEST_F(Image, EffectsShowAtTheNextPaint) {
    TMyImage* img = add();
    cad.PaintToImage();
    img->SetBrightness(100);
    EXPECT_EQ(PixelAt(cad.PaintToImage(), 21, 21), RGB(255, 100, 100));
    img->SetGrayScale(true);
    EXPECT_EQ(PixelAt(cad.PaintToImage(), 21, 21), RGB(185, 185, 185)) << "(255 + 0 + 0) div 3, then brighter";
    img->SetBrightness(0);
    img->SetContrast(255);
    EXPECT_EQ(PixelAt(cad.PaintToImage(), 21, 21), RGB(43, 43, 43)) << "85 moves away from 127 by 42";
    img->SetContrast(0);
    img->SetGrayScale(false);
    img->Bitmap()->Canvas()->SetPixel(0, 0, clYellow);  // edited in place
    EXPECT_EQ(PixelAt(cad.PaintToImage(), 20, 20), clYellow);
}

TEST_F(Image, BorderAndPlaceholderUseThePen) {
    TMyImage* img = add();
    img->Pen()->SetColor(clLime);
    EXPECT_EQ(CountPixels(cad.PaintToImage(), clLime), 0);
    img->SetBorder(true);
    QImage image = cad.PaintToImage();
    EXPECT_EQ(InkBounds(image, clLime), Rect(20, 20, 37, 33));
    EXPECT_EQ(PixelAt(image, 21, 21), clRed) << "inside, the picture";
    img->SetBitmap(TBitmap());
    image = cad.PaintToImage();
    EXPECT_EQ(InkBounds(image, clLime), Rect(20, 20, 37, 33));
    EXPECT_EQ(PixelAt(image, 28, 26), clLime) << "a diagonal";
    EXPECT_EQ(PixelAt(image, 22, 26), clWhite);
    EXPECT_TRUE(img->IsClickedMe(nullptr, {22, 26}));
}

TEST_F(Image, PaintBoundsHoldTheTurnedPictureAndBorder) {
    TMyImage* img = add();
    img->SetBorder(true);
    img->Pen()->SetWidth(3);
    for (double angle : {0.3, 0.5, 1.1}) {
        img->RotateChangeValueByAngle(angle);
        const TRect ink = InkBoundsExcept(cad.PaintToImage(), clWhite);
        const TRect box = img->GetPaintBoundsInZoom();
        EXPECT_TRUE(ink.left >= box.left && ink.top >= box.top && ink.right <= box.right && ink.bottom <= box.bottom);
    }
}

TEST_F(Image, FramesLargerThanTheCacheAreStretchedByThePainter) {
    TMyImage* img = add();
    cad.SetZoom(300);  // a 4800 x 3600 frame; the quarter ends at (8400, 7800)
    TBitmap bmp(20, 20, pf24bit);
    bmp.Canvas()->SetWindowOrg(8390, 7790);
    img->Draw(bmp.Canvas());
    EXPECT_EQ(PixelAt(bmp, 5, 5), clRed);
    EXPECT_EQ(PixelAt(bmp, 15, 5), clBlue);
    EXPECT_EQ(PixelAt(bmp, 5, 15), clBlue);
}

TEST_F(Image, InfoAndCopies) {
    TMyImage* img = add();
    EXPECT_EQ(img->GetInfo(), QString::fromUtf8("Image: 8 x 6 pixels, width 4.23 mm, height 3.17 mm, angle 0.0°"));
    img->SetBrightness(-20);
    img->SetContrast(40);
    img->SetGrayScale(true);
    img->SetTransparent(true);
    img->SetBorder(true);
    img->SetTransparentColor(clRed);
    img->SetTransparentMode(tmFixed);
    TMyImage copy(&cad);
    copy.AssignWithoutRelation(img);
    img->Bitmap()->Canvas()->SetPixel(0, 0, clYellow);
    EXPECT_EQ(PixelAt(*copy.Bitmap(), 0, 0), clRed) << "the copy has a picture of its own";
    EXPECT_EQ(PixelAt(*copy.Bitmap(), 7, 5), clBlue);
    EXPECT_TRUE(copy.Brightness() == -20 && copy.Contrast() == 40 && copy.GrayScale() && copy.Transparent() &&
                copy.Border() && copy.TransparentColor() == clRed && copy.TransparentMode() == tmFixed);
}

TEST_F(Image, AddedByCodeAtThePointWithUndo) {
    cad.SetZoom(2);
    auto* img = dynamic_cast<TMyImage*>(cad.AddImageShapeByCode("Photo", {40, 60}, *Quarters()));
    ASSERT_NE(img, nullptr);
    EXPECT_EQ(cad.GetShapeByName("Photo"), img);
    EXPECT_EQ(img->GetPoint(0), (TMyPoint{20, 30}));
    EXPECT_EQ(img->GetPoint(2), (TMyPoint{28, 36}));
    EXPECT_EQ(img->TextPoint(), (TMyPoint{24, 46}));
    EXPECT_EQ(PixelAt(*img->Bitmap(), 0, 0), clRed);
    EXPECT_EQ(cad.UndoActionName(), "ACT_ADD");
    cad.Undo();
    EXPECT_EQ(cad.GetShapesCount(), 0);
    EXPECT_EQ(cad.AddImageShapeByCode("None", {0, 0}, TBitmap()), nullptr);
    EXPECT_EQ(cad.GetShapesCount(), 0);
    EXPECT_FALSE(cad.CanUndo());
    EXPECT_NE(cad.AddImageShapeByCode("", {0, 0}, *Quarters())->Name(), "") << "named Shape + id";
}

}  // namespace
