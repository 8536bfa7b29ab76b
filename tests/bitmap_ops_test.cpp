// Bitmap effects: exact pixel values and clamps of every operation, mirror and
// rotation mappings (odd sizes, quarter turns exact, no holes, corners in the
// transparent colour), and the three-character type rule of the file loader.
#include "cad/geometry/bitmap_ops.h"
#include "platform/canvas.h"
#include "support/test_support.h"

#include <QImageWriter>
#include <QTemporaryDir>
#include <climits>
#include <functional>
#include <gtest/gtest.h>

using namespace faroven;
using faroven::test::Ascii;
using faroven::test::CountPixels;
using faroven::test::PixelAt;

namespace {

struct Bgr {
    uint8_t b, g, r;
    friend bool operator==(const Bgr&, const Bgr&) = default;
};

std::ostream& operator<<(std::ostream& os, const Bgr& p) {
    return os << "(b " << int(p.b) << ", g " << int(p.g) << ", r " << int(p.r) << ")";
}

Bgr at(TBitmap& bmp, int x, int y) {
    const uint8_t* p = bmp.ScanLine(y) + 3 * x;
    return Bgr{p[0], p[1], p[2]};
}

void put(TBitmap& bmp, int x, int y, Bgr v) {
    uint8_t* p = bmp.ScanLine(y) + 3 * x;
    p[0] = v.b;
    p[1] = v.g;
    p[2] = v.r;
}

// A pf24bit bitmap whose every pixel differs: blue = x, green = y, red = 7x + 3y.
std::unique_ptr<TBitmap> coordBitmap(int w, int h) {
    auto bmp = std::make_unique<TBitmap>(w, h, pf24bit);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) put(*bmp, x, y, Bgr{uint8_t(x), uint8_t(y), uint8_t(7 * x + 3 * y)});
    return bmp;
}

std::unique_ptr<TBitmap> filled(int w, int h, Bgr v, TPixelFormat format = pf24bit) {
    auto bmp = std::make_unique<TBitmap>(w, h, pf24bit);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) put(*bmp, x, y, v);
    if (format != pf24bit) bmp->SetPixelFormat(format);
    return bmp;
}

bool samePixels(TBitmap& a, TBitmap& b) {
    if (a.Width() != b.Width() || a.Height() != b.Height()) return false;
    for (int y = 0; y < a.Height(); ++y)
        for (int x = 0; x < a.Width(); ++x)
            if (!(at(a, x, y) == at(b, x, y))) return false;
    return true;
}

}  // namespace

// ---- Scan line view and clamp ------------------------------------------------

TEST(ScanLineView, TriplesAreBlueGreenRedBytesOfTheRow) {
    auto bmp = coordBitmap(5, 3);
    PRGBTripleArray row = ScanLineTriples(*bmp, 2);
    EXPECT_EQ(row[4].rgbtBlue, 4);
    EXPECT_EQ(row[4].rgbtGreen, 2);
    EXPECT_EQ(row[4].rgbtRed, 7 * 4 + 3 * 2);
    auto bounded = reinterpret_cast<pRGBTripleArray32768>(bmp->ScanLine(1));
    EXPECT_EQ((*bounded)[3].rgbtBlue, 3);
    EXPECT_EQ((*bounded)[3].rgbtGreen, 1);
}

TEST(ScanLineView, RejectsOtherPixelFormats) {
    TBitmap bmp(4, 4, pf32bit);
    EXPECT_THROW(ScanLineTriples(bmp, 0), EInvalidGraphic);
}

TEST(ClampByte, ClampsToTheByteRange) {
    for (auto [in, out] : {std::pair{-1, 0}, {INT_MIN, 0}, {0, 0}, {128, 128}, {255, 255}, {256, 255}, {INT_MAX, 255}})
        EXPECT_EQ(ClampByte(in), out) << in;
}

// ---- Grey scale, brightness, contrast ----------------------------------------

TEST(GrayScale, AverageWithIntegerDivisionInAllThreeBytes) {
    auto bmp = filled(3, 2, Bgr{10, 20, 31});
    put(*bmp, 2, 1, Bgr{255, 255, 254});
    GrayScaleBitmap(*bmp, true);
    EXPECT_EQ(at(*bmp, 0, 0), (Bgr{20, 20, 20}));  // 61 div 3
    EXPECT_EQ(at(*bmp, 1, 1), (Bgr{20, 20, 20}));
    EXPECT_EQ(at(*bmp, 2, 1), (Bgr{254, 254, 254}));  // 764 div 3
}

// Operations that change nothing leave even the pixel format alone.
TEST(NoOp, GreyOffZeroBrightnessAndNoFlipKeepTheBitmap) {
    const std::function<void(TBitmap&)> noOps[] = {[](TBitmap& b) { GrayScaleBitmap(b, false); },
                                                   [](TBitmap& b) { AdjustBrightBitmap(b, 0); },
                                                   [](TBitmap& b) { FlipBitmap(b, false, false); }};
    for (const auto& noOp : noOps) {
        auto bmp = filled(2, 2, Bgr{10, 20, 31}, pf32bit);
        noOp(*bmp);
        EXPECT_EQ(bmp->PixelFormat(), pf32bit);
        EXPECT_EQ(PixelAt(*bmp, 1, 1), RGB(31, 20, 10));
    }
}

TEST(GrayScale, ConvertsOtherFormatsToTwentyFourBits) {
    auto bmp = filled(2, 2, Bgr{10, 20, 31}, pf32bit);
    GrayScaleBitmap(*bmp, true);
    EXPECT_EQ(bmp->PixelFormat(), pf24bit);
    EXPECT_EQ(at(*bmp, 1, 0), (Bgr{20, 20, 20}));
}

TEST(Brightness, AddsDeltaToEveryByteAndClamps) {
    auto bmp = filled(2, 1, Bgr{0, 100, 250});
    AdjustBrightBitmap(*bmp, 10);
    EXPECT_EQ(at(*bmp, 0, 0), (Bgr{10, 110, 255}));
    AdjustBrightBitmap(*bmp, -20);
    EXPECT_EQ(at(*bmp, 1, 0), (Bgr{0, 90, 235}));
}

TEST(Brightness, ExtremeDeltasDoNotOverflow) {
    auto bmp = filled(1, 1, Bgr{1, 128, 254});
    AdjustBrightBitmap(*bmp, INT_MAX);
    EXPECT_EQ(at(*bmp, 0, 0), (Bgr{255, 255, 255}));
    AdjustBrightBitmap(*bmp, INT_MIN);
    EXPECT_EQ(at(*bmp, 0, 0), (Bgr{0, 0, 0}));
}

TEST(Contrast, PivotIs127AndResultsClamp) {
    auto bmp = filled(4, 1, Bgr{0, 127, 128});
    put(*bmp, 3, 0, Bgr{200, 255, 126});
    AdjustContrastBitmap(*bmp, 255);
    EXPECT_EQ(at(*bmp, 0, 0), (Bgr{0, 127, 129}));    // 0 - 127 clamps to 0; 127 stays; 128 moves up
    EXPECT_EQ(at(*bmp, 3, 0), (Bgr{255, 255, 125}));  // 200 + 73 = 273 clamps to 255
}

TEST(Contrast, DeltaUsesIntegerDivisionBy255) {
    auto bmp = filled(1, 1, Bgr{100, 200, 27});
    AdjustContrastBitmap(*bmp, 100);
    // 100: |27| * 100 div 255 = 10 down; 200: 73 * 100 div 255 = 28 up; 27: 100 * 100 div 255 = 39 down.
    EXPECT_EQ(at(*bmp, 0, 0), (Bgr{90, 228, 0}));
}

TEST(Contrast, MinusFullAmountCollapsesEverythingOnThePivot) {
    auto bmp = coordBitmap(16, 9);
    AdjustContrastBitmap(*bmp, -255);
    EXPECT_EQ(CountPixels(bmp->Image(), RGB(127, 127, 127)), 16 * 9);
}

TEST(Contrast, ExtremeAmountsDoNotOverflow) {
    auto bmp = filled(1, 1, Bgr{0, 126, 255});
    AdjustContrastBitmap(*bmp, INT_MAX);
    EXPECT_EQ(at(*bmp, 0, 0), (Bgr{0, 0, 255}));
    AdjustContrastBitmap(*bmp, INT_MIN);
    EXPECT_EQ(at(*bmp, 0, 0), (Bgr{255, 255, 0}));
}

// ---- Flip --------------------------------------------------------------------

class FlipOddSizes : public ::testing::TestWithParam<std::pair<int, int>> {};

TEST_P(FlipOddSizes, MirrorsEveryPixel) {
    const auto [w, h] = GetParam();
    for (int mode = 1; mode <= 3; ++mode) {
        const bool horizontal = mode & 1, vertical = mode & 2;
        auto bmp = coordBitmap(w, h);
        auto original = coordBitmap(w, h);
        FlipBitmap(*bmp, horizontal, vertical);
        ASSERT_EQ(bmp->Width(), w);
        ASSERT_EQ(bmp->Height(), h);
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x)
                ASSERT_EQ(at(*bmp, horizontal ? w - 1 - x : x, vertical ? h - 1 - y : y), at(*original, x, y))
                    << "mode " << mode << " at " << x << "," << y;
        FlipBitmap(*bmp, horizontal, vertical);
        EXPECT_TRUE(samePixels(*bmp, *original)) << "flipping twice restores, mode " << mode;
    }
}

INSTANTIATE_TEST_SUITE_P(Sizes, FlipOddSizes,
                         ::testing::Values(std::pair{1, 1}, std::pair{3, 5}, std::pair{5, 3}, std::pair{7, 1},
                                           std::pair{1, 7}, std::pair{4, 6}));

TEST(Flip, KeepsTransparencySettings) {
    auto bmp = coordBitmap(3, 3);
    bmp->SetTransparent(true);
    bmp->SetTransparentColor(clLime);
    FlipBitmap(*bmp, true, false);
    EXPECT_TRUE(bmp->Transparent());
    EXPECT_EQ(bmp->TransparentColor(), clLime);
}

TEST(Flip, PointerFormIgnoresNull) {
    FlipBitmap(static_cast<TBitmap*>(nullptr), true, true);
    GrayScaleBitmap(static_cast<TBitmap*>(nullptr), true);
    SUCCEED();
}

// ---- Rotate ------------------------------------------------------------------

TEST(Rotate, ZeroAndFullTurnsCopyThePixels) {
    auto src = coordBitmap(5, 3);
    for (double angle : {0.0, 360.0, -720.0}) {
        auto out = RotateBitmap(*src, angle, 0, 0, 0, 0);
        EXPECT_EQ(out->PixelFormat(), pf24bit);
        EXPECT_TRUE(samePixels(*out, *src)) << angle;
    }
}

TEST(Rotate, QuarterTurnsAreExactAndClockwise) {
    auto src = coordBitmap(5, 3);
    auto r90 = RotateBitmap(*src, 90, 0, 0, 0, 0);
    ASSERT_EQ(r90->Width(), 3);
    ASSERT_EQ(r90->Height(), 5);
    // Clockwise on screen: the source's top-left corner goes to the top-right.
    for (int y = 0; y < 5; ++y)
        for (int x = 0; x < 3; ++x) ASSERT_EQ(at(*r90, x, y), at(*src, y, 2 - x)) << x << "," << y;

    auto r270 = RotateBitmap(*src, -90, 0, 0, 0, 0);
    ASSERT_EQ(r270->Width(), 3);
    for (int y = 0; y < 5; ++y)
        for (int x = 0; x < 3; ++x) ASSERT_EQ(at(*r270, x, y), at(*src, 4 - y, x)) << x << "," << y;

    auto r180 = RotateBitmap(*src, 180, 0, 0, 0, 0);
    auto flipped = coordBitmap(5, 3);
    FlipBitmap(*flipped, true, true);
    EXPECT_TRUE(samePixels(*r180, *flipped));
}

TEST(Rotate, TurnedImageIsContainedWithoutHolesAndCornersAreTransparent) {
    const Bgr red{0, 0, 255};
    auto src = filled(40, 20, red);
    src->SetTransparentColor(clWhite);
    src->SetTransparent(true);
    auto out = RotateBitmap(*src, 30, 0, 0, 0, 0);
    // Bounding box of a 40 x 20 box turned by 30 degrees: 44.64 x 37.32.
    ASSERT_EQ(out->Width(), 45);
    ASSERT_EQ(out->Height(), 38);
    EXPECT_EQ(out->TransparentColor(), clWhite);
    EXPECT_EQ(out->TransparentMode(), tmFixed);
    EXPECT_TRUE(out->Transparent());
    const QImage& image = out->Image();
    EXPECT_EQ(CountPixels(image, clWhite) + CountPixels(image, clRed), 45 * 38) << "only source or transparent";
    for (auto [x, y] : {std::pair{0, 0}, {44, 0}, {0, 37}, {44, 37}}) EXPECT_EQ(PixelAt(image, x, y), clWhite);
    // Each row and each column of the turned rectangle is one unbroken run.
    for (int y = 0; y < out->Height(); ++y) {
        int runs = 0;
        for (int x = 0; x < out->Width(); ++x)
            runs += PixelAt(image, x, y) == clRed && (x == 0 || PixelAt(image, x - 1, y) != clRed);
        EXPECT_LE(runs, 1) << "row " << y << "\n" << Ascii(image, clRed);
    }
    for (int x = 0; x < out->Width(); ++x) {
        int runs = 0;
        for (int y = 0; y < out->Height(); ++y)
            runs += PixelAt(image, x, y) == clRed && (y == 0 || PixelAt(image, x, y - 1) != clRed);
        EXPECT_LE(runs, 1) << "column " << x;
    }
    // The area is kept up to the sampling of the edges.
    EXPECT_NEAR(CountPixels(image, clRed), 800, 40);
}

TEST(Rotate, KeepsContentInPlace) {
    // Four quadrants of different colours; after a turn by 30 degrees the centre
    // of each quadrant lies where the turn takes it.
    const int w = 60, h = 40;
    TBitmap src(w, h, pf24bit);
    const Bgr colours[4] = {{255, 0, 0}, {0, 255, 0}, {0, 0, 255}, {0, 255, 255}};
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) put(src, x, y, colours[(x >= w / 2) + 2 * (y >= h / 2)]);
    auto out = RotateBitmap(src, 30, 0, 0, 0, 0);
    const double c = std::cos(M_PI / 6), s = std::sin(M_PI / 6);
    for (int q = 0; q < 4; ++q) {
        const double px = (q & 1 ? 0.75 : 0.25) * w - w / 2.0, py = (q & 2 ? 0.75 : 0.25) * h - h / 2.0;
        const int tx = int(std::floor(out->Width() / 2.0 + px * c - py * s));
        const int ty = int(std::floor(out->Height() / 2.0 + px * s + py * c));
        EXPECT_EQ(at(*out, tx, ty), colours[q]) << "quadrant " << q;
    }
}

TEST(Rotate, CornersTakeTheAutomaticTransparentColour) {
    // tmAuto: the colour of the source's bottom-left pixel.
    auto src = filled(10, 10, Bgr{1, 2, 3});
    put(*src, 0, 9, Bgr{9, 8, 7});
    auto out = RotateBitmap(*src, 45, 0, 0, 0, 0);
    EXPECT_EQ(out->TransparentMode(), tmAuto);
    EXPECT_EQ(at(*out, 0, 0), (Bgr{9, 8, 7}));
    EXPECT_EQ(out->TransparentColor(), RGB(7, 8, 9));
}

TEST(Rotate, SizeAndOffsetArguments) {
    auto src = filled(4, 2, Bgr{0, 0, 255});
    src->SetTransparentColor(clWhite);
    auto framed = RotateBitmap(*src, 0, 8, 6, 0, 0);
    ASSERT_EQ(framed->Width(), 8);
    ASSERT_EQ(framed->Height(), 6);
    EXPECT_EQ(faroven::test::InkBounds(framed->Image(), clRed), Rect(2, 2, 6, 4));
    auto shifted = RotateBitmap(*src, 0, 8, 6, -2, 1);
    EXPECT_EQ(faroven::test::InkBounds(shifted->Image(), clRed), Rect(0, 3, 4, 5));
    auto cropped = RotateBitmap(*src, 0, 2, 0, 0, 0);  // width given, height automatic
    EXPECT_EQ(cropped->Width(), 2);
    EXPECT_EQ(cropped->Height(), 2);
    EXPECT_EQ(CountPixels(cropped->Image(), clRed), 4);
}

TEST(Rotate, WorksFromOtherPixelFormatsAndEmptySources) {
    auto src = filled(3, 2, Bgr{5, 6, 7}, pf32bit);
    auto out = RotateBitmap(*src, 90, 0, 0, 0, 0);
    EXPECT_EQ(out->PixelFormat(), pf24bit);
    EXPECT_EQ(out->Width(), 2);
    EXPECT_EQ(at(*out, 1, 2), (Bgr{5, 6, 7}));
    TBitmap empty;
    EXPECT_TRUE(RotateBitmap(empty, 33, 0, 0, 0, 0)->Empty());
    EXPECT_TRUE(samePixels(*RotateBitmap(*src, std::nan(""), 0, 0, 0, 0), *filled(3, 2, Bgr{5, 6, 7})));
}

TEST(Rotate, ImpossibleSizeRaisesWithAMessage) {
    auto src = filled(2, 2, Bgr{});
    EXPECT_TRUE(
        test::RaisesWith<EInvalidGraphic>([&] { RotateBitmap(*src, 0, INT_MAX, INT_MAX, 0, 0); }, "RotateBitmap"));
}

// ---- Loading files -----------------------------------------------------------

namespace {

// The red cross that stands for a picture that could not be loaded: two
// 3-pixel strokes with round ends, symmetric in both axes.
const char* const kRedCross =
    "................................\n"
    ".###........................###.\n"
    ".####......................####.\n"
    ".#####....................#####.\n"
    "..#####..................#####..\n"
    "...#####................#####...\n"
    "....#####..............#####....\n"
    ".....#####............#####.....\n"
    "......#####..........#####......\n"
    ".......#####........#####.......\n"
    "........#####......#####........\n"
    ".........#####....#####.........\n"
    "..........#####..#####..........\n"
    "...........##########...........\n"
    "............########............\n"
    ".............######.............\n"
    ".............######.............\n"
    "............########............\n"
    "...........##########...........\n"
    "..........#####..#####..........\n"
    ".........#####....#####.........\n"
    "........#####......#####........\n"
    ".......#####........#####.......\n"
    "......#####..........#####......\n"
    ".....#####............#####.....\n"
    "....#####..............#####....\n"
    "...#####................#####...\n"
    "..#####..................#####..\n"
    ".#####....................#####.\n"
    ".####......................####.\n"
    ".###........................###.\n"
    "................................\n";

void expectRedCross(TBitmap& bmp) {
    ASSERT_EQ(bmp.Width(), 32);
    ASSERT_EQ(bmp.Height(), 32);
    EXPECT_EQ(bmp.PixelFormat(), pf24bit);
    const QImage& image = bmp.Image();
    EXPECT_EQ(Ascii(image, TColor(0x0000FF)), kRedCross);
    EXPECT_EQ(CountPixels(image, TColor(0x0000FF)) + CountPixels(image, clWhite), 32 * 32);
}

QImage testPicture(int w, int h) {
    QImage image(w, h, QImage::Format_RGB32);
    image.fill(QColor(200, 40, 30));
    for (int y = 0; y < h; ++y)
        for (int x = w / 2; x < w; ++x) image.setPixel(x, y, qRgb(20, 60, 220));
    return image;
}

bool write(const QImage& image, const QString& path, const char* format) {
    QImageWriter writer(path, format);
    return writer.write(image);
}

}  // namespace

TEST(LoadGraphicsFile, JpegIsFoundThroughTheLastThreeCharacters) {
    QTemporaryDir dir;
    for (const char* name : {"picture.Jpeg", "photo.JPG", "x.jpg"}) {
        const QString path = dir.filePath(name);
        ASSERT_TRUE(write(testPicture(24, 16), path, "jpeg"));
        auto bmp = LoadGraphicsFile(path);
        ASSERT_EQ(bmp->Width(), 24) << name;
        ASSERT_EQ(bmp->Height(), 16);
        EXPECT_EQ(bmp->PixelFormat(), pf24bit);
        // JPEG is lossy: the flat halves come back close to their colours.
        const Bgr left = at(*bmp, 3, 8), right = at(*bmp, 20, 8);
        EXPECT_NEAR(left.r, 200, 12) << name;
        EXPECT_NEAR(left.b, 30, 12);
        EXPECT_NEAR(right.b, 220, 12);
        EXPECT_NEAR(right.r, 20, 12);
    }
}

TEST(LoadGraphicsFile, BitmapFilesLoadExactly) {
    QTemporaryDir dir;
    const QString path = dir.filePath("exact.bmp");
    auto src = coordBitmap(9, 7);
    src->SaveToFile(path);
    auto bmp = LoadGraphicsFile(path);
    EXPECT_EQ(bmp->PixelFormat(), pf24bit);
    EXPECT_TRUE(samePixels(*bmp, *src));
}

TEST(LoadGraphicsFile, IconsLoadOverWhite) {
    QTemporaryDir dir;
    const QString path = dir.filePath("app.ico");
    QImage icon(16, 16, QImage::Format_ARGB32);
    icon.fill(Qt::transparent);
    for (int y = 4; y < 12; ++y)
        for (int x = 4; x < 12; ++x) icon.setPixel(x, y, qRgba(0, 0, 255, 255));
    ASSERT_TRUE(write(icon, path, "ico"));
    auto bmp = LoadGraphicsFile(path);
    ASSERT_EQ(bmp->Width(), 16);
    EXPECT_EQ(bmp->PixelFormat(), pf24bit);
    EXPECT_EQ(PixelAt(*bmp, 0, 0), clWhite);
    EXPECT_EQ(PixelAt(*bmp, 8, 8), clBlue);
}

TEST(LoadGraphicsFile, UnknownTypesGiveTheRedCross) {
    QTemporaryDir dir;
    // A valid picture under a type that is not on the list: the name decides.
    const QString gif = dir.filePath("picture.gif");
    coordBitmap(8, 8)->SaveToFile(gif);
    expectRedCross(*LoadGraphicsFile(gif));
    const QString png = dir.filePath("picture.png");
    ASSERT_TRUE(write(testPicture(8, 8), png, "png"));
    expectRedCross(*LoadGraphicsFile(png));
    expectRedCross(*LoadGraphicsFile(dir.filePath("ab")));
    expectRedCross(*LoadGraphicsFile(QString()));
}

TEST(LoadGraphicsFile, MissingAndBrokenFilesGiveTheRedCross) {
    QTemporaryDir dir;
    expectRedCross(*LoadGraphicsFile(dir.filePath("missing.bmp")));
    expectRedCross(*LoadGraphicsFile(dir.filePath("missing.jpg")));
    // A JPEG named .bmp is read with the bitmap reader only, and fails.
    const QString wrong = dir.filePath("wrong.bmp");
    ASSERT_TRUE(write(testPicture(8, 8), wrong, "jpeg"));
    expectRedCross(*LoadGraphicsFile(wrong));
    // A truncated JPEG.
    const QString truncated = dir.filePath("cut.jpg");
    {
        QFile out(truncated);
        ASSERT_TRUE(out.open(QIODevice::WriteOnly));
        out.write("\xFF\xD8\xFF\xE0\x00\x10JFIF", 10);
    }
    expectRedCross(*LoadGraphicsFile(truncated));
    // A directory with a picture's name.
    ASSERT_TRUE(QDir(dir.path()).mkdir("folder.jpg"));
    expectRedCross(*LoadGraphicsFile(dir.filePath("folder.jpg")));
}

TEST(LoadGraphicsFile, MetafilesGiveTheRedCross) {
    QTemporaryDir dir;
    for (const char* name : {"drawing.emf", "drawing.WMF"}) {
        const QString path = dir.filePath(name);
        QFile out(path);
        ASSERT_TRUE(out.open(QIODevice::WriteOnly));
        out.write(QByteArray(64, '\x01'));
        out.close();
        expectRedCross(*LoadGraphicsFile(path));
    }
}
