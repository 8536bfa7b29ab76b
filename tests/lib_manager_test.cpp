// Shape libraries: the file layout byte for byte, normalisation and scaling,
// the probes, entry operations that leave the other entries untouched, the
// upgrade chain, corrupt files, pictures, and insertion into a canvas.
#include "cad/persistence/lib_manager.h"

#include "cad/canvas/mycad.h"
#include "cad/persistence/stream_io.h"
#include "cad/shapes/line.h"
#include "cad/shapes/link_point.h"
#include "cad/shapes/rectangle.h"
#include "fuzz/lib_load_harness.h"
#include "platform/bitmap.h"
#include "platform/stream.h"
#include "support/drawing_state.h"
#include "support/library.h"
#include "support/shapes.h"
#include "support/test_support.h"

#include <QDirIterator>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace faroven;
using namespace faroven::test;

namespace {

std::vector<TMyShape*> all(TMyCAD& cad) { return {cad.MyShapes().begin(), cad.MyShapes().end()}; }

// A 100 x 50 box at (100, 200) with a link point in the middle of each
// side; every coordinate normalises to a fraction that floats hold exactly.
void drawBoxWithLinkPoints(TMyCAD& cad) {
    TMyRectangle* box = AddRect(cad, 100, 200, 200, 250);
    box->SetCaption(QStringLiteral("Box"));
    box->SetTextPoint({150, 225});
    for (TMyPoint p : {TMyPoint{150, 200}, TMyPoint{200, 225}, TMyPoint{150, 250}, TMyPoint{100, 225}}) {
        TMyLinkPoint* lp = AddRect<TMyLinkPoint>(cad, p.x - 2, p.y - 2, p.x + 2, p.y + 2);
        lp->SetTextPoint(p);
    }
}

void setBytes(TLibManager& lib, const QByteArray& bytes) {
    lib.Memory().Clear();
    lib.Memory().WriteBuffer(bytes.constData(), bytes.size());
}

QByteArray entryOf(TLibManager& lib, const QString& name) {
    int64_t at = 0, length = 0;
    if (!lib.GetExistShape(name, at, length)) return {};
    return lib.Bytes().mid(qsizetype(at), qsizetype(length));
}

int32_t int32At(const QByteArray& b, int at) {
    int32_t v;
    std::memcpy(&v, b.constData() + at, 4);
    return v;
}

class LibManagerTest : public ::testing::Test {
protected:
    TMyCAD cad;
    QTemporaryDir dir;
    QString path(const QString& name) const { return dir.filePath(name); }
};

TEST_F(LibManagerTest, AnEmptyLibraryIsExactlyItsTag) {
    TLibManager lib;
    EXPECT_EQ(lib.Bytes(), QByteArray("ZEMALIBX.j"));
    lib.SaveToFile(path("empty.fvl"));
    QFile file(path("empty.fvl"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), QByteArray("ZEMALIBX.j"));
    EXPECT_TRUE(IsZEMALibFile(path("empty.fvl")));
    EXPECT_EQ(TLibManager(path("empty.fvl")).GetcmbShapesCount(), 0);
}

TEST_F(LibManagerTest, EntryLayoutAndNormalisation) {
    drawBoxWithLinkPoints(cad);
    const TArrMyPoint before = cad.GetShapeByNo(0)->Points();
    TLibManager lib;
    TUserData data;
    data.AddKeyandValue(QStringLiteral("kind"), QStringLiteral("box"));
    int w = 0, h = 0;
    ASSERT_TRUE(lib.AppendNewShape(QStringLiteral("Box"), all(cad), &data, &w, &h));
    EXPECT_EQ(w, 100);
    EXPECT_EQ(h, 50);
    EXPECT_EQ(cad.GetShapeByNo(0)->Points(), before) << "the caller's shapes stay as they were";

    const QByteArray b = lib.Bytes();
    EXPECT_EQ(b.mid(10, 4), QByteArray("\x03" "Box", 4));
    EXPECT_EQ(int32At(b, 14), b.size() - 18) << "size counts the bytes after it";
    EXPECT_EQ(int32At(b, 18), 100);
    EXPECT_EQ(int32At(b, 22), 50);
    EXPECT_EQ(int32At(b, 26), 1);  // one user data pair: "kind", "box"
    EXPECT_EQ(b.mid(30, 15), QByteArray("\x04\0\0\0kind\x03\0\0\0box", 15));
    EXPECT_EQ(int32At(b, 45), 5);
    EXPECT_EQ(b.mid(49, 16), QByteArray("TMyRectangle    "));
    // The record that follows: empty name, id, number 0, then the points in the unit box.
    EXPECT_EQ(int32At(b, 65), 0);
    auto record = TMemoryStream::FromBytes(b.mid(65 + 4 + 4 * 4 + 8));
    EXPECT_EQ(ReadInt32(*record), 4);
    for (TMyPoint expected : {TMyPoint{0, 0}, TMyPoint{1, 0}, TMyPoint{1, 1}, TMyPoint{0, 1}}) {
        EXPECT_EQ(ReadSingle(*record), expected.x);
        EXPECT_EQ(ReadSingle(*record), expected.y);
    }

    TArrMyPoint linkPoints;
    TUserData readData;
    TLibShapes shapes;
    ASSERT_TRUE(lib.GetCmbShape(QStringLiteral("Box"), linkPoints, &readData, shapes, 0, 0, true));
    EXPECT_EQ(readData, data);
    ASSERT_EQ(shapes.size(), 1u);
    EXPECT_EQ(shapes[0]->Points(), (TArrMyPoint{{0, 0}, {100, 0}, {100, 50}, {0, 50}}));
    EXPECT_EQ(shapes[0]->TextPoint(), (TMyPoint{50, 25}));
    EXPECT_EQ(shapes[0]->Caption(), QStringLiteral("Box"));
    EXPECT_TRUE(shapes[0]->Name().isEmpty());
    EXPECT_EQ(linkPoints, (TArrMyPoint{{50, 0}, {100, 25}, {50, 50}, {0, 25}}));
}

// An entry assembled from the field writers, whose byte counts sum to the size field.
TEST_F(LibManagerTest, FieldWritersReturnTheirByteCounts) {
    AddRect<TMyEllipse>(cad, 0, 0, 40, 20);
    TLibManager lib;
    TUserData data;
    data.AddKeyandValue("a", "bc");
    lib.Memory().SetPosition(lib.Memory().Size());
    EXPECT_EQ(lib.WriteCmbShapeName("Oval"), 5);
    const int64_t sizeAt = lib.Memory().Position();
    EXPECT_EQ(lib.WriteCmbShapeSize(0), 4);
    int32_t w = 0, h = 0;
    int size = lib.WriteWidthHeight(40, 20);
    EXPECT_EQ(size, 8);
    size += lib.WriteUserDataRecords(data);
    EXPECT_EQ(size, 8 + 4 + 5 + 6);
    const int shapesBytes = lib.WriteShapes(all(cad), w, h);
    EXPECT_EQ(lib.Memory().Position(), sizeAt + 4 + size + shapesBytes);
    lib.Memory().SetPosition(sizeAt);
    lib.WriteCmbShapeSize(size + shapesBytes);

    TArrMyPoint lps;
    TUserData readData;
    TLibShapes shapes;
    ASSERT_TRUE(lib.GetCmbShape("Oval", lps, &readData, shapes, 0, 0, true));
    EXPECT_EQ(readData, data);
    ASSERT_EQ(shapes.size(), 1u);
    EXPECT_EQ(shapes[0]->Points()[2], (TMyPoint{40, 20}));

    QString tag;
    EXPECT_EQ(lib.ReadLibTag(tag), 10);
    EXPECT_EQ(tag, QStringLiteral("ZEMALIBX.j"));
    QString name;
    EXPECT_EQ(lib.ReadCmbShapeName(name), 5);
    EXPECT_EQ(name, QStringLiteral("Oval"));
}

TEST_F(LibManagerTest, FlatEntriesStoreOneAndReadingScalesFromTheLeftEdge) {
    AddShape<TMyLine>(cad, {{40, 70}, {90, 70}, {140, 70}});
    TLibManager lib;
    int w = 0, h = 0;
    ASSERT_TRUE(lib.AppendNewShape(QStringLiteral("Flat"), all(cad), nullptr, &w, &h));
    EXPECT_EQ(w, 100);
    EXPECT_EQ(h, 1) << "a flat entry stores 1, not 0";

    TArrMyPoint linkPoints;
    TLibShapes shapes;
    ASSERT_TRUE(lib.GetCmbShape(QStringLiteral("Flat"), linkPoints, nullptr, shapes, 2 * w, h, false));
    ASSERT_EQ(shapes.size(), 1u);
    EXPECT_EQ(shapes[0]->Points(), (TArrMyPoint{{0, 0}, {100, 0}, {200, 0}}));
}

TEST_F(LibManagerTest, ProbesAcceptExactlyTheirTags) {
    const char* tags[] = {"ZEMALIBX.j", "ZEMALIBX.i", "ZEMALIBX.h", "ZEMALIBX.e", "ZEMALIBX.a", "ZEMALIBX.9",
                          "ZEMALIBX.8", "ZEMALIBX.7", "ZEMALIBX.6", "ZEMALIBX.3", "ZEMALIBX.2", "ZEMALIB2.1",
                          "ZEMALIBX.k", "ZEMALIBX"};
    // Which probes say yes, in the order: general, X8, X9, XA, XE, XH, XI, X67, X2, OLD.
    const char* expected[] = {"1000000000", "0000001000", "1000010000", "0000100000", "1001000000",
                              "1010000000", "1100000000", "1000000100", "1000000100", "1000000000",
                              "1000000010", "0000000001", "0000000000", "0000000000"};
    for (size_t i = 0; i < std::size(tags); ++i) {
        const QString file = path(QStringLiteral("probe%1").arg(i));
        QFile f(file);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(QByteArray(tags[i]) + "\x01X");
        f.close();
        std::string got;
        for (bool yes : {IsZEMALibFile(file), IsZEMALibFileX8(file), IsZEMALibFileX9(file), IsZEMALibFileXA(file),
                         IsZEMALibFileXE(file), IsZEMALibFileXH(file), IsZEMALibFileXI(file),
                         IsZEMALibFileX67(file), IsZEMALibX2File(file), IsOLDZEMALibFile(file)})
            got += yes ? '1' : '0';
        EXPECT_EQ(got, expected[i]) << tags[i];
    }
    EXPECT_EQ(LibTagRecordVersion(QStringLiteral("ZEMALIBX.3")), QStringLiteral("XP.4"));
    EXPECT_THROW(IsZEMALibFile(path("missing")), EFOpenError);
    EXPECT_THROW(TLibManager(path("missing")), EFOpenError);
}

TEST_F(LibManagerTest, EntryOperationsLeaveTheOtherEntriesByteIdentical) {
    TLibManager lib;
    for (int i = 0; i < 3; ++i) {
        TMyCAD source;
        AddRect(source, 0, 0, 10.0f * float(i + 1), 20);
        ASSERT_TRUE(lib.AppendNewShape(QString(QChar('A' + i)), all(source), nullptr));
    }
    const QByteArray a = entryOf(lib, "A"), b = entryOf(lib, "B"), c = entryOf(lib, "C");
    const QByteArray tag = lib.Bytes().left(10);
    ASSERT_EQ(lib.Bytes(), tag + a + b + c);

    TMyCAD other;
    AddShape<TMyLine>(other, {{0, 0}, {30, 40}});
    EXPECT_FALSE(lib.AppendNewShape("A", all(other), nullptr)) << "names are unique";
    EXPECT_FALSE(lib.AppendNewShape("", all(other), nullptr));
    EXPECT_FALSE(lib.AppendNewShape(QString(256, 'n'), all(other), nullptr));
    EXPECT_FALSE(lib.AppendNewShape("D", {}, nullptr));
    EXPECT_EQ(lib.Bytes(), tag + a + b + c);

    ASSERT_TRUE(lib.RepalceExistShape("B", all(other), nullptr));
    const QByteArray newB = entryOf(lib, "B");
    EXPECT_NE(newB, b);
    EXPECT_EQ(lib.Bytes(), tag + a + newB + c);

    ASSERT_TRUE(lib.RenameCmbShapeName("B", "Bee"));
    EXPECT_EQ(lib.Bytes(), tag + a + QByteArray("\x03" "Bee") + newB.mid(2) + c);
    EXPECT_FALSE(lib.RenameCmbShapeName("Bee", "A"));
    EXPECT_FALSE(lib.RenameCmbShapeName("B", "X"));
    const QByteArray bee = entryOf(lib, "Bee");

    ASSERT_TRUE(lib.MoveCmbShapeBeforeByName("C", "A"));
    EXPECT_EQ(lib.Bytes(), tag + c + a + bee);
    ASSERT_TRUE(lib.MoveCmbShapeBeforeByName("C", "Bee"));
    EXPECT_EQ(lib.Bytes(), tag + a + c + bee);
    EXPECT_FALSE(lib.MoveCmbShapeBeforeByName("C", "nothing"));

    int64_t at = 0, length = 0;
    ASSERT_TRUE(lib.GetExistShape("C", at, length));
    EXPECT_FALSE(lib.InsertNewShape(at + 1, "B", all(other), nullptr)) << "inside an entry";
    ASSERT_TRUE(lib.InsertNewShape(at, "B", all(other), nullptr));
    EXPECT_EQ(lib.Bytes(), tag + a + newB + c + bee);

    ASSERT_TRUE(lib.DeleteShape("C"));
    EXPECT_FALSE(lib.DeleteShape("C"));
    EXPECT_EQ(lib.Bytes(), tag + a + newB + bee);
    EXPECT_EQ(lib.GetcmbShapesCount(), 3);
    EXPECT_EQ(lib.GetCmbShapesNameByID(2), QStringLiteral("Bee"));
    EXPECT_EQ(lib.GetCmbShapesNameByID(3), QString());
    EXPECT_EQ(lib.GetCmbShapesNames(), (QStringList{"A", "B", "Bee"}));

    TArrMyPoint lps;
    TLibShapes shapes;
    EXPECT_FALSE(lib.GetCmbShape("C", lps, nullptr, shapes, 0, 0, true));
}

// Each older tag: the entries are brought into that tag's layout, and the
// upgrade chain brings back the very bytes of the current library.
TEST_F(LibManagerTest, UpgradeChainFromEveryOlderTagKeepsTheShapes) {
    drawBoxWithLinkPoints(cad);
    TMyCAD second;
    TMyLine* line = AddShape<TMyLine>(second, {{0, 0}, {50, 25}, {100, 50}});
    line->SetTextPoint({50, 25});
    TLibManager current;
    ASSERT_TRUE(current.AppendNewShape("Box", all(cad), nullptr));
    ASSERT_TRUE(current.AppendNewShape("Line", all(second), nullptr));
    const QByteArray expected = current.Bytes();

    const struct {
        const char* tag;
        TFileVersion version;
    } older[] = {{"ZEMALIBX.6", TFileVersion::XP6}, {"ZEMALIBX.7", TFileVersion::XP7},
                 {"ZEMALIBX.8", TFileVersion::XP8}, {"ZEMALIBX.9", TFileVersion::XP9},
                 {"ZEMALIBX.a", TFileVersion::XPa}, {"ZEMALIBX.e", TFileVersion::XPe},
                 {"ZEMALIBX.h", TFileVersion::XPh}, {"ZEMALIBX.i", TFileVersion::XPi}};
    for (const auto& o : older) {
        SCOPED_TRACE(o.tag);
        TLibManager lib;
        setBytes(lib, expected);
        RewriteInOlderLayout(lib, o.version, o.tag);
        ASSERT_LT(lib.Bytes().size(), expected.size()) << "older layouts are shorter";
        lib.SaveToFile(path("old.fvl"));

        const QString tag = ReadLibFileTag(path("old.fvl"));
        TLibManager opened(path("old.fvl"));
        ASSERT_TRUE(opened.UpgradeFrom(tag));
        EXPECT_EQ(opened.Bytes(), expected);
    }
    TLibManager lib;
    EXPECT_FALSE(lib.UpgradeFrom("ZEMALIBX.k"));
}

TEST_F(LibManagerTest, TheOldestLibrariesAreRefusedWithAReason) {
    QFile f(path("old.lib"));
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write("ZEMALIB2.1\x05shape");
    f.close();
    TLibManager lib;
    EXPECT_TRUE(RaisesWith<EFileFormatError>([&] { lib.LoadFromOldFile(path("old.lib")); }, "ZEMALIB2.1"));
}

TEST_F(LibManagerTest, CorruptLibrariesRaiseErrorsNamingEntryAndOffset) {
    TLibManager lib;
    const auto count = [&] { lib.GetcmbShapesCount(); };
    setBytes(lib, QByteArray("ZEMALIBX.j") + "\xC8" "ab");
    EXPECT_TRUE(RaisesWith<EFileFormatError>(count, "run past the end of the file at byte offset 10"));
    setBytes(lib, QByteArray("ZEMALIBX.j") + QByteArray("\x01Q\xFF\xFF\xFF\x7F", 6));
    EXPECT_TRUE(RaisesWith<EFileFormatError>(count, "Library entry \"Q\": its size 2147483647 does not fit"));
    setBytes(lib, QByteArray("ZEMALIBX.j") + QByteArray("\x01Q\xFF\xFF\xFF\xFF", 6));
    EXPECT_TRUE(RaisesWith<EFileFormatError>(count, "its size -1"));

    // An entry claiming two billion shapes in a few bytes.
    QByteArray entry("\x01Q\x14\0\0\0" "\x01\0\0\0\x01\0\0\0" "\0\0\0\0" "\0\0\0\x7F" "abcd", 26);
    setBytes(lib, QByteArray("ZEMALIBX.j") + entry);
    TArrMyPoint lps;
    TLibShapes shapes;
    const auto read = [&] { lib.GetCmbShape("Q", lps, nullptr, shapes, 0, 0, true); };
    EXPECT_TRUE(RaisesWith<EFileFormatError>(read, "Library entry \"Q\" cannot be read: Shape count"));

    // Cut anywhere, a library that was sound reads without a crash or a
    // false entry: the walk stops with an error, or the entry read fails.
    drawBoxWithLinkPoints(cad);
    TLibManager sound;
    ASSERT_TRUE(sound.AppendNewShape("Box", all(cad), nullptr));
    const QByteArray whole = sound.Bytes();
    for (int n = 11; n < whole.size(); ++n) {
        setBytes(lib, whole.left(n));
        EXPECT_THROW(
            {
                if (lib.GetcmbShapesCount() == 1) read();
                lib.GetCmbShape("Box", lps, nullptr, shapes, 0, 0, true);
            },
            EFileFormatError)
            << n;
    }

    // An unknown class name inside an entry.
    QByteArray renamed = whole;
    renamed.replace(renamed.indexOf("TMyRectangle"), 12, "TMyNoSuchOne");
    setBytes(lib, renamed);
    EXPECT_TRUE(RaisesWith<EFileFormatError>([&] { lib.GetCmbShape("Box", lps, nullptr, shapes, 0, 0, true); },
                                             "Unknown shape class \"TMyNoSuchOne\""));
}

// Inputs stored from fuzzing, and the seeds, through the fuzz target's checks.
TEST_F(LibManagerTest, StoredFuzzInputs) {
    int replayed = 0;
    QDirIterator it(QStringLiteral(FAROVEN_TEST_DATA "/../../fuzz/corpus/lib_load_fuzzer"), QDir::Files);
    while (it.hasNext()) {
        QFile file(it.next());
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        const QByteArray bytes = file.readAll();
        SCOPED_TRACE(it.filePath().toStdString());
        fuzz::runLibraryLoad(reinterpret_cast<const uint8_t*>(bytes.constData()), size_t(bytes.size()));
        ++replayed;
    }
    EXPECT_GE(replayed, 3);
}

TEST_F(LibManagerTest, PictureOfAnEntry) {
    TMyRectangle* box = AddRect(cad, 10, 10, 50, 30);
    box->Brush()->SetColor(clRed);
    box->Pen()->SetColor(clBlue);
    TLibManager lib;
    ASSERT_TRUE(lib.AppendNewShape("Red", all(cad), nullptr));
    TBitmap bitmap;
    ASSERT_TRUE(lib.GetCmbShapeImage("Red", 2.0, bitmap, clWhite));
    const int m = TLibManager::kImageMargin;
    // The frame from 0 to 80 inks 81 columns.
    EXPECT_EQ(bitmap.Width(), 81 + 2 * m);
    EXPECT_EQ(bitmap.Height(), 41 + 2 * m);
    EXPECT_EQ(PixelAt(bitmap, 40 + m, 20 + m), clRed);
    EXPECT_EQ(PixelAt(bitmap, 0, 0), clWhite);
    EXPECT_EQ(InkBoundsExcept(bitmap.Image(), clWhite).left, m);
    EXPECT_FALSE(lib.GetCmbShapeImage("none", 1.0, bitmap, clWhite));

    // A flat entry's arrow head is ink beyond its box of height 1, and shows whole.
    TMyCAD flat;
    AddShape<TMyLine>(flat, {{0, 0}, {100, 0}})->SetArrowStyle(ARight);
    ASSERT_TRUE(lib.AppendNewShape("Arrow", all(flat), nullptr));
    ASSERT_TRUE(lib.GetCmbShapeImage("Arrow", 1.0, bitmap, clWhite));
    const TRect ink = InkBoundsExcept(bitmap.Image(), clWhite);
    EXPECT_EQ(ink.top, m);
    EXPECT_EQ(bitmap.Height() - ink.bottom, m);
    EXPECT_GT(ink.bottom - ink.top, 6);
}

TEST_F(LibManagerTest, InsertingAnEntryAddsOneCombinedShapeAsOneUndoStep) {
    drawBoxWithLinkPoints(cad);
    TMyLine* line = AddShape<TMyLine>(cad, {{100, 200}, {200, 250}});
    cad.GroupShapes({cad.GetShapeByNo(0), line}, false);
    TLibManager lib;
    TUserData data;
    data.AddKeyandValue("part", "P-1");
    ASSERT_TRUE(lib.AppendNewShape("Part", all(cad), &data));

    TMyCAD target;
    AddRect(target, 0, 0, 10, 10);
    TMyShape* combined = target.AddUserDefineShapefromLib(lib, "Part", {300, 400}, 200, 100);
    ASSERT_NE(combined, nullptr);
    EXPECT_EQ(combined->kind(), TShapeKind::Combine);
    ExpectIntact(target);
    // The rectangle, the line, their group and the combined shape holding the group.
    ASSERT_EQ(target.GetShapesCount(), 5);
    EXPECT_EQ(combined->ShapeNo(), 4);
    EXPECT_EQ(std::as_const(*combined).ChildShapeNos(), (std::vector<int32_t>{3}));
    EXPECT_EQ(target.GetShapeByNo(1)->Points(), (TArrMyPoint{{300, 400}, {500, 400}, {500, 500}, {300, 500}}));
    EXPECT_EQ(combined->Points(), target.GetShapeByNo(1)->Points());
    EXPECT_EQ(combined->LinkPoints(), (TArrMyPoint{{400, 400}, {500, 450}, {400, 500}, {300, 450}}));
    EXPECT_EQ(combined->UserData()->GetValueByKey("part"), QStringLiteral("P-1"));
    EXPECT_EQ(combined->Name(), QStringLiteral("Shape%1").arg(combined->GetShapeId()));
    ASSERT_EQ(target.WorkingShapes().size(), 1u);
    EXPECT_EQ(target.WorkingShapes().front(), combined);

    target.Undo();
    EXPECT_EQ(target.GetShapesCount(), 1);
    target.Redo();
    EXPECT_EQ(target.GetShapesCount(), 5);
    ExpectIntact(target);

    EXPECT_EQ(target.AddUserDefineShapefromLib(lib, "none", {0, 0}), nullptr);
    // At the stored size by default.
    TMyShape* stored = target.AddUserDefineShapefromLib(lib, "Part", {0, 0});
    ASSERT_NE(stored, nullptr);
    EXPECT_EQ(stored->Points()[2], (TMyPoint{100, 50}));
}

}  // namespace
