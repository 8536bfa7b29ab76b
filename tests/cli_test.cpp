// The faroven command-line tool run as a program: what info prints, convert
// and render producing files that read back, and the exit codes and messages
// of bad input.
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include "tests/text_printers.h"

namespace {

struct Result {
    int code = -1;
    QString out, err;
};

Result faroven(const QStringList& args) {
    QProcess process;
    process.start(QStringLiteral(FAROVEN_CLI), args);
    EXPECT_TRUE(process.waitForFinished(120000));
    return Result{process.exitCode(), QString::fromLocal8Bit(process.readAllStandardOutput()),
               QString::fromLocal8Bit(process.readAllStandardError())};
}

const QString kKinds = QStringLiteral(FAROVEN_TEST_DATA "/dxf/kinds_r2000.dxf");

TEST(Cli, InfoDescribesADxfFileAndTheDrawingConvertedFromIt) {
    const Result dxf = faroven({"info", kKinds, "--extended"});
    ASSERT_EQ(dxf.code, 0) << dxf.err.toStdString();
    EXPECT_TRUE(dxf.out.contains("kind: DXF"));
    EXPECT_TRUE(dxf.out.contains("  WALLS (visible, 2 shapes)"));
    EXPECT_TRUE(dxf.out.contains("  HIDDEN (hidden, 1 shapes)"));
    EXPECT_TRUE(dxf.out.contains("shapes: 15\n"));
    EXPECT_TRUE(dxf.out.contains("  TMyPolyBezier 2\n"));
    EXPECT_TRUE(dxf.out.contains(": POINT: entity not supported"));

    QTemporaryDir dir;
    const QString drawing = dir.filePath("kinds.fvd");
    ASSERT_EQ(faroven({"convert", kKinds, drawing, "--extended"}).code, 0);
    const Result fvd = faroven({"info", drawing});
    ASSERT_EQ(fvd.code, 0);
    EXPECT_TRUE(fvd.out.contains("kind: drawing (version XP.j)"));
    // The same layers and shapes as the DXF import.
    EXPECT_EQ(fvd.out.mid(fvd.out.indexOf("layers:")), dxf.out.mid(dxf.out.indexOf("layers:"), dxf.out.indexOf("left out:") - dxf.out.indexOf("layers:")));

    // Back to DXF: the two-line text and the one-line text come back as three texts.
    const QString back = dir.filePath("back.dxf");
    ASSERT_EQ(faroven({"convert", drawing, back}).code, 0);
    const Result again = faroven({"info", back});
    EXPECT_EQ(again.code, 0);
    EXPECT_TRUE(again.out.contains("  TMyText 3\n")) << again.out.toStdString();
}

TEST(Cli, RenderWritesPictures) {
    QTemporaryDir dir;
    for (const char* name : {"k.png", "k.svg", "k.pdf", "k.jpg", "k.bmp", "k.wmf"}) {
        const Result run = faroven({"render", kKinds, "--extended", "-o", dir.filePath(name), "--zoom", "2"});
        ASSERT_EQ(run.code, 0) << run.err.toStdString();
    }
    QImage png(dir.filePath("k.png"));
    ASSERT_FALSE(png.isNull());
    EXPECT_GT(png.width(), 500);
    int ink = 0;
    for (int y = 0; y < png.height(); ++y)
        for (int x = 0; x < png.width(); ++x) ink += png.pixel(x, y) != qRgb(255, 255, 255);
    EXPECT_GT(ink, 2000);
    QFile svg(dir.filePath("k.svg")), pdf(dir.filePath("k.pdf"));
    ASSERT_TRUE(svg.open(QIODevice::ReadOnly) && pdf.open(QIODevice::ReadOnly));
    EXPECT_TRUE(svg.readAll().contains("<svg"));
    EXPECT_TRUE(pdf.readAll().startsWith("%PDF"));
    EXPECT_EQ(QImage(dir.filePath("k.bmp")).size(), png.size());

    // The page as the editor shows it: A4 at 96 pixels per inch and zoom 2.
    const Result page = faroven({"render", kKinds, "--extended", "--page", "--zoom", "2", "-o", dir.filePath("p.bmp")});
    ASSERT_EQ(page.code, 0) << page.err.toStdString();
    EXPECT_EQ(QImage(dir.filePath("p.bmp")).size(), QSize(1587, 2245));

    // Only one layer: the WALLS layer holds a dashed red line and a circle.
    const Result walls = faroven({"render", kKinds, "--extended", "--layer", "WALLS", "-o", dir.filePath("w.png")});
    ASSERT_EQ(walls.code, 0);
    EXPECT_LT(QImage(dir.filePath("w.png")).width(), png.width() / 2 + 20);
}

TEST(Cli, BadInputExitsWithAMessage) {
    QTemporaryDir dir;
    const Result missing = faroven({"info", dir.filePath("none.dxf")});
    EXPECT_EQ(missing.code, 1);
    EXPECT_TRUE(missing.err.contains("none.dxf: no such file"));

    const QString broken = dir.filePath("broken.dxf");
    QFile file(broken);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("0\nSECTION\n2\nENTITIES\n0\nPOLYLINE\n70\n0\n0\nLINE\n0\nENDSEC\n0\nEOF\n");
    file.close();
    const QString out = dir.filePath("out.fvd");
    const Result invalid = faroven({"convert", broken, out});
    EXPECT_EQ(invalid.code, 1);
    EXPECT_EQ(invalid.err, "faroven: " + broken + ":9: Invalid DXF file.\n");
    EXPECT_FALSE(QFile::exists(out));

    EXPECT_EQ(faroven({"render", kKinds}).code, 2);
    EXPECT_EQ(faroven({"info", kKinds, "--zoom", "x"}).code, 2);
    const Result unknown = faroven({"draw", kKinds});
    EXPECT_EQ(unknown.code, 2);
    EXPECT_TRUE(unknown.err.contains("unknown command \"draw\""));
    EXPECT_TRUE(faroven({"--help"}).out.contains("Usage: faroven"));
}

}  // namespace
