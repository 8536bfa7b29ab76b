// The platform layer: the drawing conventions that hit areas and pixel tests
// depend on (rectangle and line end pixels, alternate fill, exclusive-or
// drawing restoring the image, region edges), colours, BMP images and streams.
#include "platform/bitmap.h"
#include "platform/canvas.h"
#include "platform/color.h"
#include "platform/stream.h"
#include "platform/strings.h"
#include "platform/ansi.h"
#include "support/test_support.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace faroven;
using faroven::test::Ascii;
using faroven::test::CountPixels;
using faroven::test::InkBounds;
using faroven::test::PixelAt;

namespace {

// A white bitmap of the given size with a black one-pixel pen and a clear brush.
std::unique_ptr<TBitmap> whiteBitmap(int w, int h, TPixelFormat format = pfDevice) {
    auto bmp = faroven::test::FilledBitmap(w, h, clWhite, format);
    bmp->Canvas()->Pen()->SetColor(clBlack);
    bmp->Canvas()->Brush()->SetStyle(bsClear);
    return bmp;
}

class DrawingConventions : public ::testing::TestWithParam<TPixelFormat> {};

TEST_P(DrawingConventions, FilledRectangleDrawsOutlineAndInteriorOnce) {
    auto bmp = whiteBitmap(20, 20, GetParam());
    TCanvas* c = bmp->Canvas();
    c->Pen()->SetColor(clRed);
    c->Brush()->SetColor(clBlue);
    c->Rectangle(2, 2, 8, 7);
    EXPECT_EQ(InkBounds(bmp->Image(), clRed), Rect(2, 2, 8, 7)) << "left to right minus one";
    EXPECT_EQ(InkBounds(bmp->Image(), clBlue), Rect(3, 3, 7, 6));
    EXPECT_EQ(CountPixels(bmp->Image(), clRed), 6 * 5 - 4 * 3);
    c->Brush()->SetStyle(bsClear);
    c->Rectangle(10, 10, 16, 15);
    EXPECT_EQ(PixelAt(*bmp, 12, 12), clWhite) << "a clear brush draws the outline only";
}

TEST_P(DrawingConventions, RectangleWithoutPenFillsOnePixelLess) {
    auto bmp = whiteBitmap(20, 20, GetParam());
    TCanvas* c = bmp->Canvas();
    c->Pen()->SetStyle(psClear);
    c->Brush()->SetColor(clBlue);
    c->Rectangle(2, 2, 8, 7);
    EXPECT_EQ(InkBounds(bmp->Image(), clBlue), Rect(2, 2, 7, 6));
}

TEST_P(DrawingConventions, LinesInEveryDirectionKeepTheStartAndLeaveOutTheEnd) {
    const TPoint centre{20, 20};
    for (int k = 0; k < 32; ++k) {
        const double a = k * M_PI / 16;
        const TPoint end{centre.x + Round(12 * std::cos(a)), centre.y + Round(9 * std::sin(a))};
        auto bmp = whiteBitmap(41, 41, GetParam());
        bmp->Canvas()->MoveTo(centre.x, centre.y);
        bmp->Canvas()->LineTo(end.x, end.y);
        EXPECT_EQ(bmp->Canvas()->PenPos(), end);
        EXPECT_EQ(PixelAt(*bmp, centre.x, centre.y), clBlack) << "to " << end.x << "," << end.y;
        EXPECT_EQ(PixelAt(*bmp, end.x, end.y), clWhite) << "to " << end.x << "," << end.y;
        EXPECT_EQ(CountPixels(bmp->Image(), clBlack), std::max(std::abs(end.x - centre.x), std::abs(end.y - centre.y)))
            << "to " << end.x << "," << end.y;
    }
}

TEST_P(DrawingConventions, PolylineJointsAreDrawnOnceInExclusiveOr) {
    auto bmp = whiteBitmap(30, 30, GetParam());
    TCanvas* c = bmp->Canvas();
    c->Pen()->SetMode(pmXor);
    c->Pen()->SetColor(clWhite);
    const TArrPoint zigzag = {{25, 3}, {3, 3}, {3, 25}, {25, 14}, {10, 10}};
    c->Polyline(zigzag);
    for (size_t i = 0; i + 1 < zigzag.size(); ++i)
        EXPECT_EQ(PixelAt(*bmp, zigzag[i].x, zigzag[i].y), clBlack) << "vertex " << i;
    EXPECT_EQ(PixelAt(*bmp, 10, 10), clWhite) << "the last point is left out";
}

TEST_P(DrawingConventions, EllipseStaysInsideItsBox) {
    auto bmp = whiteBitmap(30, 30, GetParam());
    bmp->Canvas()->Ellipse(3, 4, 23, 18);
    EXPECT_EQ(InkBounds(bmp->Image(), clBlack), Rect(3, 4, 23, 18)) << Ascii(bmp->Image(), clBlack);
}

TEST_P(DrawingConventions, PolygonFillsWithTheAlternateRule) {
    auto bmp = whiteBitmap(20, 20, GetParam());
    TCanvas* c = bmp->Canvas();
    c->Pen()->SetStyle(psClear);
    c->Brush()->SetColor(clBlack);
    // A square traced twice around: under the alternate rule, a point inside
    // is crossed an even number of times by the doubled outline only where the
    // two loops differ. Here: outer square with an inner square hole.
    const TArrPoint pts = {{1, 1}, {15, 1}, {15, 15}, {1, 15}, {1, 1}, {5, 5}, {11, 5}, {11, 11}, {5, 11}, {5, 5}};
    c->Polygon(pts);
    EXPECT_EQ(PixelAt(*bmp, 2, 2), clBlack);
    EXPECT_EQ(PixelAt(*bmp, 8, 8), clWhite) << Ascii(bmp->Image(), clBlack);
    EXPECT_EQ(PixelAt(*bmp, 14, 14), clBlack);
    EXPECT_EQ(PixelAt(*bmp, 15, 8), clWhite);
}

TEST_P(DrawingConventions, PolygonOutlineDrawsEveryVertexOnce) {
    auto bmp = whiteBitmap(100, 70, GetParam());
    const TArrPoint tri = {{10, 10}, {90, 10}, {90, 60}};
    bmp->Canvas()->Polygon(tri);
    for (const TPoint& v : tri) EXPECT_EQ(PixelAt(*bmp, v.x, v.y), clBlack) << v.x << "," << v.y;
    // In exclusive-or mode a vertex drawn twice would vanish.
    auto xored = whiteBitmap(100, 70, GetParam());
    xored->Canvas()->Pen()->SetMode(pmXor);
    xored->Canvas()->Pen()->SetColor(clWhite);
    xored->Canvas()->Polygon(tri);
    for (const TPoint& v : tri) EXPECT_EQ(PixelAt(*xored, v.x, v.y), clBlack) << v.x << "," << v.y;
}

TEST_P(DrawingConventions, ExclusiveOrDrawnTwiceRestoresTheImage) {
    auto bmp = whiteBitmap(40, 40, GetParam());
    TCanvas* c = bmp->Canvas();
    c->Brush()->SetStyle(bsSolid);
    c->Brush()->SetColor(clAqua);
    c->Rectangle(5, 5, 25, 30);
    const QImage before = bmp->Image().copy();
    c->Pen()->SetMode(pmXor);
    c->Pen()->SetColor(clWhite);
    c->Pen()->SetStyle(psDot);
    c->Brush()->SetStyle(bsClear);
    for (int pass = 0; pass < 2; ++pass) {
        c->Rectangle(2, 3, 30, 20);
        c->Ellipse(8, 8, 36, 36);
        c->MoveTo(0, 0);
        c->LineTo(39, 25);
        const TArrPoint tri = {{3, 35}, {20, 22}, {37, 38}};
        c->Polygon(tri);
        if (pass == 0) EXPECT_NE(bmp->Image(), before);
    }
    EXPECT_EQ(bmp->Image(), before);
}

INSTANTIATE_TEST_SUITE_P(Formats, DrawingConventions, ::testing::Values(pfDevice, pf24bit));

TEST(PenModes, EachModeAppliesItsRasterOperation) {
    struct Case { TPenMode mode; TColor dst; TColor pen; TColor expected; };
    const Case cases[] = {
        {pmBlack, 0x123456, 0x00FF00, 0x000000}, {pmWhite, 0x123456, 0x00FF00, 0xFFFFFF},
        {pmNop, 0x123456, 0x00FF00, 0x123456},   {pmNot, 0x123456, 0x00FF00, 0xEDCBA9},
        {pmCopy, 0x123456, 0x00FF00, 0x00FF00},  {pmNotCopy, 0x123456, 0x00FF00, 0xFF00FF},
        {pmMerge, 0x101010, 0x010101, 0x111111}, {pmMask, 0x0F0F0F, 0x030303, 0x030303},
        {pmXor, 0x0F0F0F, 0xFFFFFF, 0xF0F0F0},   {pmNotXor, 0x0F0F0F, 0xFFFFFF, 0x0F0F0F},
    };
    for (const Case& k : cases) {
        auto bmp = faroven::test::FilledBitmap(4, 4, k.dst);
        bmp->Canvas()->Pen()->SetColor(k.pen);
        bmp->Canvas()->Pen()->SetMode(k.mode);
        bmp->Canvas()->MoveTo(0, 1);
        bmp->Canvas()->LineTo(4, 1);
        EXPECT_EQ(PixelAt(*bmp, 2, 1), k.expected) << "mode " << int(k.mode);
        EXPECT_EQ(PixelAt(*bmp, 2, 2), k.dst) << "mode " << int(k.mode);
    }
}

TEST(Regions, PolygonRegionHoldsLeftTopEdgesNotRightBottom) {
    const TArrPoint square = {{10, 10}, {20, 10}, {20, 20}, {10, 20}};
    const QRegion r = CreatePolygonRgn(square);
    EXPECT_TRUE(PtInRegion(r, 10, 10));
    EXPECT_TRUE(PtInRegion(r, 19, 19));
    EXPECT_FALSE(PtInRegion(r, 20, 15));
    EXPECT_FALSE(PtInRegion(r, 15, 20));
    EXPECT_FALSE(PtInRegion(r, 9, 15));
    // The region is exactly what Polygon fills.
    auto bmp = faroven::test::FilledBitmap(30, 30, clWhite);
    bmp->Canvas()->Pen()->SetStyle(psClear);
    bmp->Canvas()->Brush()->SetColor(clBlack);
    const TArrPoint tri = {{3, 2}, {27, 9}, {8, 26}};
    bmp->Canvas()->Polygon(tri);
    const QRegion tr = CreatePolygonRgn(tri);
    for (int y = 0; y < 30; ++y)
        for (int x = 0; x < 30; ++x)
            EXPECT_EQ(PtInRegion(tr, x, y), PixelAt(*bmp, x, y) == clBlack) << x << "," << y;
}

TEST(Regions, TooFewPointsGiveAnEmptyRegion) {
    const TArrPoint two = {{0, 0}, {5, 5}};
    EXPECT_TRUE(CreatePolygonRgn(two).isEmpty());
}

TEST(Canvas, ArcChordAndPieRunCounterClockwiseBetweenTheRadials) {
    // The quarter from the radial through the right (3 o'clock) to the one
    // through the top (12 o'clock).
    auto arc = whiteBitmap(41, 41);
    arc->Canvas()->Arc(0, 0, 41, 41, 40, 20, 20, 0);
    EXPECT_GT(CountPixels(arc->Image(), clBlack), 20);
    EXPECT_EQ(CountPixels(arc->Image().copy(0, 22, 41, 19), clBlack), 0) << "nothing in the lower half";
    EXPECT_EQ(CountPixels(arc->Image().copy(0, 0, 18, 41), clBlack), 0) << "nothing in the left half";
    auto pie = whiteBitmap(41, 41);
    pie->Canvas()->Brush()->SetStyle(bsSolid);
    pie->Canvas()->Brush()->SetColor(clRed);
    pie->Canvas()->Pie(0, 0, 41, 41, 40, 20, 20, 0);
    EXPECT_EQ(PixelAt(*pie, 28, 12), clRed) << "inside the quarter";
    EXPECT_EQ(PixelAt(*pie, 12, 28), clWhite);
    auto chord = whiteBitmap(41, 41);
    chord->Canvas()->Brush()->SetStyle(bsSolid);
    chord->Canvas()->Brush()->SetColor(clRed);
    chord->Canvas()->Chord(0, 0, 41, 41, 40, 20, 20, 0);
    EXPECT_EQ(PixelAt(*chord, 33, 7), clRed) << "between the arc and its chord";
    EXPECT_EQ(PixelAt(*chord, 24, 16), clWhite) << "the centre side of the chord stays empty";
}

TEST(Canvas, InvertRectTwiceRestores) {
    auto bmp = whiteBitmap(10, 10);
    bmp->Canvas()->Pen()->SetColor(clRed);
    bmp->Canvas()->Rectangle(1, 1, 9, 9);
    const QImage before = bmp->Image().copy();
    bmp->Canvas()->InvertRect(Rect(0, 0, 6, 6));
    EXPECT_EQ(PixelAt(*bmp, 0, 0), clBlack);
    EXPECT_EQ(PixelAt(*bmp, 1, 1), clAqua);  // inverse of red
    EXPECT_EQ(PixelAt(*bmp, 7, 7), clWhite);
    bmp->Canvas()->InvertRect(Rect(0, 0, 6, 6));
    EXPECT_EQ(bmp->Image(), before);
}

TEST(Canvas, PathStrokeAndFillUsesPenAndBrush) {
    auto bmp = whiteBitmap(20, 20);
    TCanvas* c = bmp->Canvas();
    c->Brush()->SetStyle(bsSolid);
    c->Brush()->SetColor(clBlue);
    c->Pen()->SetColor(clRed);
    c->BeginPath();
    c->MoveTo(2, 2);
    c->LineTo(17, 2);
    c->LineTo(17, 17);
    c->LineTo(2, 17);
    c->LineTo(2, 2);
    c->EndPath();
    EXPECT_EQ(CountPixels(bmp->Image(), clRed), 0) << "nothing is drawn while the path is recorded";
    c->StrokeAndFillPath();
    EXPECT_EQ(PixelAt(*bmp, 9, 9), clBlue);
    EXPECT_EQ(PixelAt(*bmp, 2, 9), clRed);
}

TEST(Canvas, TextExtentOfEmptyStringHasFontHeight) {
    auto bmp = whiteBitmap(10, 10);
    const TSize e = bmp->Canvas()->TextExtent(QString());
    EXPECT_EQ(e.cx, 0);
    EXPECT_GT(e.cy, 0);
    EXPECT_GT(bmp->Canvas()->TextExtent("Hello").cx, 10);
}

TEST(Canvas, TextOutDrawsInFontColourOnOpaqueBackground) {
    auto bmp = whiteBitmap(80, 30);
    TCanvas* c = bmp->Canvas();
    c->Font()->SetColor(clRed);
    c->Font()->SetSize(12);
    c->Brush()->SetStyle(bsSolid);
    c->Brush()->SetColor(clYellow);
    c->TextOut(5, 5, "WWW");
    EXPECT_GT(CountPixels(bmp->Image(), clRed), 10);
    EXPECT_EQ(PixelAt(*bmp, 5, 5), clYellow);
    const TRect ink = InkBounds(bmp->Image(), clYellow);
    EXPECT_EQ(ink.left, 5);
    EXPECT_EQ(ink.top, 5);
}

TEST(Canvas, DrawSkipsTheTransparentColour) {
    TBitmap sprite(4, 4, pf24bit);
    sprite.Canvas()->Brush()->SetColor(clFuchsia);
    sprite.Canvas()->FillRect(Rect(0, 0, 4, 4));
    sprite.Canvas()->SetPixel(1, 1, clBlue);
    sprite.SetTransparent(true);
    EXPECT_EQ(sprite.TransparentColor(), clFuchsia) << "automatic mode takes the bottom-left pixel";
    auto bmp = whiteBitmap(10, 10);
    bmp->Canvas()->Draw(3, 3, &sprite);
    EXPECT_EQ(PixelAt(*bmp, 4, 4), clBlue);
    EXPECT_EQ(PixelAt(*bmp, 3, 3), clWhite);
    EXPECT_EQ(CountPixels(bmp->Image(), clFuchsia), 0);
}

TEST(Canvas, CopyRectCopiesPixels) {
    auto src = whiteBitmap(10, 10);
    src->Canvas()->SetPixel(2, 3, clRed);
    auto dst = whiteBitmap(10, 10);
    dst->Canvas()->CopyRect(Rect(5, 5, 10, 10), src->Canvas(), Rect(0, 0, 5, 5));
    EXPECT_EQ(PixelAt(*dst, 7, 8), clRed);
    EXPECT_EQ(CountPixels(dst->Image(), clRed), 1);
}

TEST(Colors, SystemColoursResolveThroughTheFixedPalette) {
    EXPECT_EQ(ColorToRGB(clWindow), clWhite);
    EXPECT_EQ(ColorToRGB(clWindowText), clBlack);
    EXPECT_EQ(ColorToRGB(clBtnFace), 0xC8D0D4);
    EXPECT_EQ(ColorToRGB(clRed), clRed);
    EXPECT_EQ(ColorToRGB(0x7F123456), 0x123456) << "high byte of a plain colour is ignored";
}

TEST(Colors, ConversionToQtSwapsRedAndBlue) {
    EXPECT_EQ(ToQColor(clRed), QColor(255, 0, 0));
    EXPECT_EQ(ToQColor(0x00336699), QColor(0x99, 0x66, 0x33));
    EXPECT_EQ(FromQColor(QColor(0x99, 0x66, 0x33)), 0x00336699);
    EXPECT_EQ(GetRValue(0x00336699), 0x99);
    EXPECT_EQ(GetBValue(0x00336699), 0x33);
}

TEST(Graphics, AttributeObjectsNotifyAndAssign) {
    TPen pen;
    int changes = 0;
    pen.OnChange = [&](TObject*) { ++changes; };
    pen.SetColor(clRed);
    pen.SetColor(clRed);
    pen.SetWidth(3);
    EXPECT_EQ(changes, 2) << "setting an unchanged value does not notify";
    TPen copy;
    copy.Assign(pen);
    EXPECT_EQ(copy.Color(), clRed);
    EXPECT_EQ(copy.Width(), 3);
    TBrush brush;
    brush.SetStyle(bsClear);
    brush.SetColor(clRed);
    EXPECT_EQ(brush.Style(), bsSolid) << "colouring a clear brush makes it solid";
    TFont font;
    EXPECT_EQ(font.Height(), -11) << "8 points at 96 pixels per inch";
    EXPECT_THROW(pen.Assign(&font), EInvalidOperation);
}

class BitmapRoundTrip : public ::testing::TestWithParam<TPixelFormat> {};

TEST_P(BitmapRoundTrip, SavesAndLoadsThroughAStream) {
    TBitmap bmp(7, 5, GetParam());  // odd width: rows need padding in the file
    for (int y = 0; y < 5; ++y)
        for (int x = 0; x < 7; ++x) bmp.Canvas()->SetPixel(x, y, RGB(x * 30, y * 50, x + y));
    TMemoryStream stream;
    stream.Write("pre", 3);
    bmp.SaveToStream(stream);
    const int64_t end = stream.Position();
    stream.Write("post", 4);
    stream.SetPosition(3);
    TBitmap back;
    back.LoadFromStream(stream);
    EXPECT_EQ(stream.Position(), end) << "loading consumes exactly the image";
    EXPECT_EQ(back.PixelFormat(), GetParam() == pf24bit ? pf24bit : pf32bit);
    ASSERT_EQ(back.Width(), 7);
    ASSERT_EQ(back.Height(), 5);
    for (int y = 0; y < 5; ++y)
        for (int x = 0; x < 7; ++x) EXPECT_EQ(PixelAt(back, x, y), RGB(x * 30, y * 50, x + y));
}

INSTANTIATE_TEST_SUITE_P(Formats, BitmapRoundTrip, ::testing::Values(pf24bit, pfDevice));

TEST(Bitmap, TwentyFourBitScanLinesAreBlueGreenRed) {
    TBitmap bmp(3, 2, pf24bit);
    bmp.Canvas()->SetPixel(1, 0, RGB(31, 20, 10));
    const uint8_t* row = bmp.ScanLine(0);
    EXPECT_EQ(row[3], 10);
    EXPECT_EQ(row[4], 20);
    EXPECT_EQ(row[5], 31);
    EXPECT_THROW(bmp.ScanLine(2), EInvalidGraphic);
}

// A side of 0 leaves a bitmap without pixels but keeps the other side, so
// that width and height set one after the other give that size in either
// order; growing keeps the pixels and makes the new ones white.
TEST(Bitmap, WidthAndHeightSetOneAfterTheOtherInEitherOrder) {
    TBitmap wide;
    wide.SetWidth(6);
    EXPECT_TRUE(wide.Empty());
    EXPECT_THROW(wide.ScanLine(0), EInvalidGraphic) << "no pixels yet";
    wide.SetHeight(4);
    TBitmap tall(0, 0, pf24bit);
    tall.SetHeight(4);
    tall.SetWidth(6);
    for (TBitmap* bmp : {&wide, &tall}) {
        EXPECT_EQ(bmp->Width(), 6);
        EXPECT_EQ(bmp->Height(), 4);
        EXPECT_EQ(bmp->Image().size(), QSize(6, 4));
    }
    tall.Canvas()->SetPixel(5, 3, clRed);
    tall.SetWidth(9);
    tall.SetHeight(7);
    EXPECT_EQ(PixelAt(tall, 5, 3), clRed);
    EXPECT_EQ(PixelAt(tall, 8, 6), clWhite);
}

TEST(Bitmap, FileHeaderLayoutIsTheStandardOne) {
    TBitmap bmp(2, 2, pf24bit);
    TMemoryStream s;
    bmp.SaveToStream(s);
    const uint8_t* m = s.Memory();
    ASSERT_EQ(s.Size(), 14 + 40 + 2 * 8);
    EXPECT_EQ(m[0], 'B');
    EXPECT_EQ(m[1], 'M');
    EXPECT_EQ(m[2], 70);
    EXPECT_EQ(m[10], 54);
    EXPECT_EQ(m[14], 40);
    EXPECT_EQ(m[28], 24);
}

TEST(Bitmap, BadImagesRaiseWithThePosition) {
    auto garbage = TMemoryStream::FromBytes(QByteArray("XXgarbage-not-a-bitmap"));
    TBitmap bmp;
    EXPECT_TRUE(test::RaisesWith<EInvalidGraphic>([&] { bmp.LoadFromStream(*garbage); }, "position 0"));
    // A header that claims more bytes than the stream has.
    QByteArray truncated("BM\xff\xff\x00\x00", 6);
    truncated.append(QByteArray(20, '\0'));
    auto s = TMemoryStream::FromBytes(truncated);
    EXPECT_THROW(bmp.LoadFromStream(*s), EReadError);
    EXPECT_TRUE(bmp.Empty()) << "a failed load leaves the bitmap as it was";
}

TEST(Streams, ShortReadRaisesNamingThePosition) {
    TMemoryStream s;
    s.Write("abcdef", 6);
    s.SetPosition(4);
    char buf[8];
    EXPECT_TRUE(test::RaisesWith<EReadError>([&] { s.ReadBuffer(buf, 5); }, "position 4"));
    s.SetPosition(0);
    s.ReadBuffer(buf, 6);
    EXPECT_EQ(std::string(buf, 6), "abcdef");
}

TEST(Streams, MemoryStreamSeeksGrowsAndCopies) {
    TMemoryStream s;
    s.SetPosition(4);
    s.Write("xy", 2);
    EXPECT_EQ(s.Size(), 6) << "writing past the end grows the stream";
    EXPECT_EQ(s.Seek(-1, soEnd), 5);
    TMemoryStream t;
    t.CopyFrom(s, 0);
    EXPECT_EQ(t.ToByteArray(), QByteArray("\0\0\0\0xy", 6));
    s.SetSize(2);
    EXPECT_EQ(s.Position(), 2);
}

TEST(Streams, FileStreamErrorsNameTheFile) {
    QTemporaryDir dir;
    const QString missing = dir.filePath("missing.bin");
    EXPECT_TRUE(test::RaisesWith<EFOpenError>([&] { TFileStream f(missing, fmOpenRead); }, "missing.bin"));
    {
        TFileStream f(dir.filePath("a.bin"), fmCreate);
        f.WriteBuffer("1234", 4);
    }
    TMemoryStream m;
    m.LoadFromFile(dir.filePath("a.bin"));
    EXPECT_EQ(m.ToByteArray(), QByteArray("1234"));
}

TEST(Strings, TextJoinsWithCrLfAndSplitsAnyLineEnd) {
    TStrings s;
    s.SetText("a\r\nb\nc\rd");
    ASSERT_EQ(s.Count(), 4);
    EXPECT_EQ(s[3], "d");
    EXPECT_EQ(s.Text(), "a\r\nb\r\nc\r\nd\r\n");
    EXPECT_THROW(s.Strings(4), EStringListError);
    s.Delete(1);
    EXPECT_EQ(s.IndexOf("c"), 1);
}

TEST(Ansi, WindowsCodePageRoundTrips) {
    const QString text = QString::fromUtf8("caf\u00e9 \u20ac5 \u2013 \u0152");
    const QByteArray bytes = ToAnsi(text);
    EXPECT_EQ(bytes, QByteArray("caf\xe9 \x80" "5 \x96 \x8c"));
    EXPECT_EQ(FromAnsi(bytes), text);
    EXPECT_EQ(ToAnsi(QString::fromUtf8("\u4e2d")), QByteArray("?"));
}

}  // namespace
