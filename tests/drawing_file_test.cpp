// Drawing files: the stream layout byte for byte, loading every version's
// header, blocks and their layer modes, loads that fail without touching the
// open drawing, atomic saves, and the clipboard.
#include "cad/canvas/mycad.h"
#include "cad/persistence/stream_io.h"
#include "cad/shapes/arc.h"
#include "cad/shapes/image.h"
#include "cad/shapes/line.h"
#include "cad/shapes/link.h"
#include "cad/shapes/link_point.h"
#include "cad/shapes/polyline.h"
#include "cad/shapes/rectangle.h"
#include "cad/shapes/text.h"
#include "fuzz/drawing_harness.h"
#include "platform/system.h"
#include "support/drawing_state.h"
#include "support/shapes.h"
#include "support/test_support.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QTemporaryDir>
#include <functional>
#include <gtest/gtest.h>

using namespace faroven;
using namespace faroven::test;

namespace {

QByteArray bytesOf(TMyCAD& cad) {
    TMemoryStream s;
    cad.SaveToStream(s);
    return s.ToByteArray();
}

void load(TMyCAD& cad, const QByteArray& bytes) {
    auto s = TMemoryStream::FromBytes(bytes);
    cad.LoadFromStream(*s);
}

QByteArray readFile(const QString& name) {
    QFile f(name);
    EXPECT_TRUE(f.open(QIODevice::ReadOnly)) << name.toStdString();
    return f.readAll();
}

void writeFile(const QString& name, const QByteArray& bytes) {
    QFile f(name);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(bytes);
}

// Little-endian field writer for expected bytes.
struct Bytes {
    QByteArray b;
    Bytes& text(const char* t, int width) {
        QByteArray f(t);
        f.append(width - f.size(), ' ');
        b += f;
        return *this;
    }
    Bytes& i32(int32_t v) { return raw(&v, 4); }
    Bytes& u8(uint8_t v) { return raw(&v, 1); }
    Bytes& f64(double v) { return raw(&v, 8); }
    Bytes& str(const char* t) { return i32(int32_t(qstrlen(t))).raw(t, int(qstrlen(t))); }
    Bytes& raw(const void* p, int n) {
        b.append(static_cast<const char*>(p), n);
        return *this;
    }
    // The header of a drawing of the given version.
    Bytes& header(const char* version, const char* signature = "Faroven Component") {
        return text(signature, 64).text("Faroven drawing", 64).text(version, 16).text("20091209", 10).text("", 64);
    }
    // Fields from the background colour to the ratio.
    Bytes& settings(int w, int h) { return i32(0xFFFFFF).i32(w).i32(h).u8(mm).i32(0).i32(0).i32(Center).f64(1.0); }
};

// A drawing with a shape of every class, a group, a link line between two
// link points, user data, three layers and an image.
void buildSample(TMyCAD& cad) {
    cad.NewLayer("Second", true);
    cad.NewLayer("Hidden", false);
    cad.UserData()->AddKeyandValue("owner", "faroven");
    cad.SetTag(7);
    TMyRectangle* r = AddRect(cad, 10, 10, 60, 40);
    r->SetCaption(QStringLiteral("Größe"));
    r->UserData()->AddKeyandValue("k", "v");
    AddRect<TMyEllipse>(cad, 80, 10, 120, 50)->SetAngle(0.5f);
    TMyText* text = AddRect<TMyText>(cad, 10, 60, 90, 90);
    text->Lines()->Add("first line");
    text->Lines()->Add("second");
    AddRect<TMyImage>(cad, 100, 60, 140, 90);
    AddShape<TMyPolygon>(cad, {{10, 100}, {50, 100}, {30, 130}, {10, 100}});
    AddShape<TMyRuleLine>(cad, {{60, 100}, {120, 100}});
    AddShape<TMyElliArc>(cad, {{130, 100}, {160, 110}, {150, 140}});
    TMyLinkPoint* a = AddRect<TMyLinkPoint>(cad, 200, 10, 208, 18);
    TMyLinkPoint* b = AddRect<TMyLinkPoint>(cad, 260, 60, 268, 68);
    a->AddLinkPoint({204, 14});
    b->AddLinkPoint({264, 64});
    TMyLine* line = AddJoiningLine(cad, a, b);
    line->SetArrowStyle(ARight);
    TMyRectangle* m1 = AddRect(cad, 300, 10, 320, 30);
    TMyRectangle* m2 = AddRect(cad, 330, 10, 350, 30);
    cad.GroupShapes({m1, m2});
    cad.RemoveAllWorkingShapes();
}

}  // namespace

// ---------------------------------------------------------------- layout

TEST(DrawingLayout, EmptyDrawingIsTheHeaderAndItsFieldsByteForByte) {
    TMyCAD cad;
    cad.DeleteAllLayers();
    cad.SetWidth(640);
    cad.SetHeight(480);
    const QByteArray expected =
        Bytes{}.header("XP.j").settings(640, 480).i32(0).i32(0).i32(0).i32(-1).i32(0).b;
    EXPECT_EQ(bytesOf(cad).toHex(), expected.toHex());
    EXPECT_EQ(expected.size(), 218 + 53);

    TMyCAD other;
    load(other, expected);
    EXPECT_EQ(other.GetShapesCount(), 0);
    EXPECT_EQ(other.GetLayersCount(), 0);
    EXPECT_EQ(other.Width(), 640);
    EXPECT_EQ(bytesOf(other), expected);
}

TEST(DrawingLayout, SizeIsStoredUnzoomedAndReloadsAtZoomOne) {
    TMyCAD cad;
    cad.SetZoom(2.0);
    cad.SetWidth(1000);
    cad.SetHeight(801);  // 400.5 rounds to the even neighbour
    const QByteArray bytes = bytesOf(cad);
    TMyCAD other;
    other.SetZoom(3.0);
    load(other, bytes);
    EXPECT_EQ(other.Zoom(), 1.0);
    EXPECT_EQ(other.Width(), 500);
    EXPECT_EQ(other.Height(), 400);
}

TEST(DrawingLayout, EverySettingLayerAndUserDataComesBack) {
    TMyCAD cad;
    cad.NewLayer("Top", false);
    cad.SetCurrentLayerId(0);
    cad.SetColorOfBackGround(0x123456);
    cad.SetUnit(inch);
    cad.SetRatio(2.5);
    cad.SetTag(-9);
    cad.SetBkBitmapMode(Tiled);
    TBitmap bk;
    bk.SetSize(3, 2);
    cad.SetBkBitmap(bk);
    cad.UserData()->AddKeyandValue("a", "1");
    const QByteArray bytes = bytesOf(cad);

    TMyCAD other;
    load(other, bytes);
    EXPECT_EQ(other.ColorOfBackGround(), TColor(0x123456));
    EXPECT_EQ(other.TheUNIT(), inch);
    EXPECT_EQ(other.Ratio(), 2.5);
    EXPECT_EQ(other.Tag(), -9);
    EXPECT_EQ(other.BkBitmapMode(), Tiled);
    EXPECT_EQ(other.BkBitmap()->Width(), 3);
    EXPECT_EQ(other.UserData()->GetValueByKey("a"), "1");
    ASSERT_EQ(other.GetLayersCount(), 2);
    EXPECT_EQ(other.GetLayerNameByID(1), "Top");
    EXPECT_FALSE(other.IsVisibleLayerByID(1));
    EXPECT_EQ(other.CurrentLayerId(), 0);
    EXPECT_EQ(bytesOf(other), bytes);
    // The id counter continues after the highest id loaded.
    EXPECT_EQ(other.NewLayer("Next", true), 2);
}

TEST(DrawingLayout, ShapesRoundTripToIdenticalBytesAndState) {
    TMyCAD cad;
    buildSample(cad);
    const QByteArray bytes = bytesOf(cad);
    TMyCAD other;
    load(other, bytes);
    EXPECT_EQ(DrawingState(other), DrawingState(cad));
    ExpectIntact(other);
    EXPECT_EQ(bytesOf(other), bytes);
    // New shapes continue after the highest id; the history starts empty.
    EXPECT_EQ(other.NextShapeId(), cad.NextShapeId());
    EXPECT_FALSE(other.CanUndo());
    for (TMyShape* s : other.MyShapes()) EXPECT_EQ(s->CenterPoint(), s->ComputeCenterPoint());
}

// ---------------------------------------------------------------- versions and signature

TEST(DrawingVersions, OlderHeadersLoad) {
    // "XP.e" has no tag and no user data before the layers; a layer stored
    // as visible 2 is hidden; a version is stored trimmed.
    const QByteArray xpe = Bytes{}.header("  XP.e  ").settings(300, 200).i32(1).str("L").i32(4).i32(2).i32(4).i32(0).b;
    TMyCAD cad;
    cad.SetTag(5);
    load(cad, xpe);
    EXPECT_EQ(cad.DiskFileVersion(), "XP.e");
    EXPECT_EQ(cad.DiskFileVersionCode(), TFileVersion::XPe);
    EXPECT_EQ(cad.Tag(), 5);
    ASSERT_EQ(cad.GetLayersCount(), 1);
    EXPECT_FALSE(cad.IsVisibleLayerByID(4));
    EXPECT_EQ(cad.CurrentLayerId(), 4);
    // Saving writes the current version and leaves the one read in place.
    EXPECT_EQ(bytesOf(cad).mid(128, 16), QByteArray("XP.j            "));
    EXPECT_EQ(cad.DiskFileVersion(), "XP.e");
}

TEST(DrawingVersions, SignatureIsTheTrimmedFirstSixtyFourBytes) {
    QTemporaryDir dir;
    const auto probe = [&](const char* signature) {
        const QString name = dir.filePath("probe.fvd");
        writeFile(name, Bytes{}.header("XP.j", signature).b);
        return TMyCAD::IsZEMAFile(name);
    };
    EXPECT_TRUE(probe("Faroven Component"));
    EXPECT_TRUE(probe("   Faroven Component"));
    EXPECT_FALSE(probe("Faroven Component 2"));
    EXPECT_FALSE(probe("faroven component"));
    EXPECT_THROW(TMyCAD::IsZEMAFile(dir.filePath("missing.fvd")), EFOpenError);

    TMyCAD cad;
    buildSample(cad);
    const std::string before = DrawingState(cad);
    writeFile(dir.filePath("other.fvd"), Bytes{}.header("XP.j", "Another Program").b);
    EXPECT_FALSE(cad.LoadFromFile(dir.filePath("other.fvd")));
    EXPECT_EQ(DrawingState(cad), before);
}

// ---------------------------------------------------------------- bad input

TEST(DrawingBadInput, EveryTruncationFailsClearlyAndLeavesTheDrawing) {
    TMyCAD source;
    buildSample(source);
    const QByteArray good = bytesOf(source);

    TMyCAD cad;
    AddRect(cad, 1, 1, 5, 5);
    const QByteArray before = bytesOf(cad);
    for (int cut = 0; cut < good.size(); ++cut) {
        try {
            load(cad, good.left(cut));
            ADD_FAILURE() << "a stream cut at " << cut << " loaded";
        } catch (const EReadError& e) {
            ASSERT_TRUE(e.Message().contains("byte offset")) << e.Message().toStdString();
        }
        ASSERT_EQ(bytesOf(cad), before) << "cut at " << cut;
    }
    EXPECT_EQ(cad.DiskFileVersion(), "XP.j");
}

TEST(DrawingBadInput, AbsurdCountsAndUnknownClassesAreRejectedAtOnce) {
    const Bytes base = Bytes{}.header("XP.j").settings(10, 10).i32(0).i32(0).i32(1).str("L").i32(0).i32(1).i32(0);
    struct Case {
        QByteArray bytes;
        const char* says;
    } cases[] = {
        {Bytes{base}.i32(2000000000).b, "Shape count 2000000000"},
        {Bytes{}.header("XP.j").settings(10, 10).i32(0).i32(0).i32(2000000000).b, "Layer count"},
        {Bytes{}.header("XP.j").settings(10, 10).i32(0).i32(1000000).b, "User data"},
        {Bytes{base}.i32(1).text("TMyCircle", 16).raw(QByteArray(200, 0).constData(), 200).b,
         "Unknown shape class \"TMyCircle\""},
        {Bytes{}.header("XP.j").settings(10, 10).i32(0).i32(0).i32(0).i32(-1).i32(1).raw(QByteArray(200, 0).constData(), 200).b,
         "no layer"},
    };
    for (const Case& c : cases) {
        TMyCAD cad;
        try {
            load(cad, c.bytes);
            ADD_FAILURE() << c.says;
        } catch (const EFileFormatError& e) {
            EXPECT_TRUE(e.Message().contains(QLatin1String(c.says))) << e.Message().toStdString();
        }
        EXPECT_EQ(cad.GetLayersCount(), 1);
    }
}

// Relations that no drawing has are refused before they can mislead painting.
TEST(DrawingBadInput, RelationsMustHangTogether) {
    const auto refusal = [](const std::function<void(TMyCAD&, TMyShape*, TMyShape*)>& spoil) {
        TMyCAD cad;
        TMyShape* a = AddRect(cad, 0, 0, 5, 5);
        TMyShape* b = AddRect(cad, 10, 0, 15, 5);
        spoil(cad, a, b);
        TMyCAD other;
        try {
            load(other, bytesOf(cad));
        } catch (const EFileFormatError& e) {
            return e.Message().toStdString();
        }
        return std::string("loaded");
    };
    EXPECT_EQ(refusal([](TMyCAD&, TMyShape* a, TMyShape* b) {
                  a->SetParentShapeNo(1);
                  b->SetParentShapeNo(0);
              }).substr(0, 24),
              "Shape 0 is inside itself");
    EXPECT_NE(refusal([](TMyCAD&, TMyShape* a, TMyShape*) { a->SetChildShapeNos({1}); }).find("as a member"),
              std::string::npos);
    EXPECT_NE(refusal([](TMyCAD&, TMyShape*, TMyShape* b) { b->SetParentShapeNo(7); }).find("no valid group"),
              std::string::npos);
    EXPECT_NE(refusal([](TMyCAD&, TMyShape* a, TMyShape*) { a->SetShapeNo(4); }).find("stored as number 4"),
              std::string::npos);
}

// Inputs stored from fuzzing, and the seeds, through the fuzz targets' checks.
TEST(DrawingBadInput, StoredFuzzInputs) {
    int replayed = 0;
    for (const char* target : {"drawing_load_fuzzer", "block_load_fuzzer"}) {
        QDirIterator it(QStringLiteral(FAROVEN_TEST_DATA "/../../fuzz/corpus/") + target, QDir::Files);
        while (it.hasNext()) {
            const QByteArray bytes = readFile(it.next());
            SCOPED_TRACE(it.filePath().toStdString());
            const auto* data = reinterpret_cast<const uint8_t*>(bytes.constData());
            if (qstrcmp(target, "drawing_load_fuzzer") == 0) faroven::fuzz::runDrawingLoad(data, size_t(bytes.size()));
            else faroven::fuzz::runBlockLoad(data, size_t(bytes.size()));
            ++replayed;
        }
    }
    EXPECT_GE(replayed, 4);
}

// ---------------------------------------------------------------- files

namespace {
// A rectangle whose record fails after a few bytes when its turn comes.
class FailingRectangle : public TMyRectangle {
public:
    using TMyRectangle::TMyRectangle;
    void SaveToStream(TStream& stream) override {
        if (failing) {
            WriteInt32(stream, 1);
            throw EWriteError(QStringLiteral("disk full"));
        }
        TMyRectangle::SaveToStream(stream);
    }
    bool failing = false;
};
}  // namespace

TEST(DrawingFiles, SaveReplacesTheFileOnlyWhenComplete) {
    QTemporaryDir dir;
    const QString name = dir.filePath("drawing.fvd");
    TMyCAD cad;
    buildSample(cad);
    std::vector<FailingRectangle*> failing;
    for (int i = 0; i < 6; ++i) failing.push_back(AddRect<FailingRectangle>(cad, 10.f * i, 200, 10.f * i + 5, 205));
    cad.SetChanged(true);
    ASSERT_TRUE(cad.SaveToFile(name));
    EXPECT_FALSE(cad.Changed());
    const QByteArray saved = readFile(name);
    EXPECT_EQ(saved, bytesOf(cad));

    AddRect(cad, 0, 0, 1, 1);  // the drawing differs from the file now
    for (FailingRectangle* shape : failing) {
        shape->failing = true;
        cad.SetChanged(true);
        EXPECT_THROW(cad.SaveToFile(name), EWriteError);
        shape->failing = false;
        EXPECT_EQ(readFile(name), saved);
        EXPECT_TRUE(cad.Changed());
        EXPECT_EQ(QDir(dir.path()).entryList(QDir::Files), QStringList{"drawing.fvd"});
    }
    EXPECT_THROW(cad.SaveToFile(dir.filePath("no/such/folder/x.fvd")), EFCreateError);

    TMyCAD other;
    ASSERT_TRUE(other.LoadFromFile(name));
    EXPECT_EQ(other.GetShapesCount(), cad.GetShapesCount() - 1);
}

// ---------------------------------------------------------------- blocks

TEST(DrawingBlocks, ImportAddsTheMissingLayersByPosition) {
    TMyCAD block;
    block.NewLayer("B1", true);
    block.NewLayer("B2", true);
    block.NewLayer("B3", true);
    block.SetCurrentLayerId(3);
    AddRect(block, 0, 0, 10, 10);  // on B3, the fourth layer
    block.SetCurrentLayerId(1);
    AddRect(block, 20, 0, 30, 10);  // on B1, the second layer
    const QByteArray bytes = bytesOf(block);

    TMyCAD cad;
    cad.NewLayer("Mine", true);
    AddRect(cad, 0, 0, 5, 5);
    auto s = TMemoryStream::FromBytes(bytes);
    ASSERT_TRUE(cad.LoadFromStreamforBlock(*s, Import));
    EXPECT_EQ(cad.GetShapesCount(), 1);
    ASSERT_EQ(cad.GetMemShapesCount(), 2);
    EXPECT_EQ(cad.GetLayersCount(), 4);
    EXPECT_EQ(cad.GetLayerNameByID(2), "BlockB2");
    EXPECT_EQ(cad.GetLayerNameByID(3), "BlockB3");
    EXPECT_EQ(cad.MemShapes()[0]->LayerId(), 3);
    EXPECT_EQ(cad.MemShapes()[1]->LayerId(), 1);
    EXPECT_EQ(cad.MemShapes()[0]->GetShapeId(), 1);
    EXPECT_TRUE(cad.MemShapes()[0]->Name().isEmpty());
    ASSERT_TRUE(cad.PasteforBlock());
    EXPECT_EQ(cad.GetShapesCount(), 3);
    EXPECT_EQ(cad.GetShapeByNo(2)->Name(), "Shape2");
    EXPECT_EQ(cad.GetSelectedShapesCount(), 2);
    EXPECT_TRUE(cad.Changed());
    ExpectIntact(cad);
    cad.Undo();
    EXPECT_EQ(cad.GetShapesCount(), 1);
}

TEST(DrawingBlocks, MergeKeepsTheDrawingAndOnlyEnlargesIt) {
    TMyCAD block;
    buildSample(block);
    block.SetWidth(300);
    block.SetHeight(5000);
    QTemporaryDir dir;
    ASSERT_TRUE(block.SaveToFile(dir.filePath("block.fvd")));

    TMyCAD cad;
    cad.SetWidth(900);
    cad.SetHeight(700);
    TMyRectangle* mine = AddRect(cad, 0, 0, 5, 5);
    cad.NewLayer("Current", true);
    ASSERT_TRUE(cad.AddBlockfromZEMAFile(dir.filePath("block.fvd"), Merge));
    EXPECT_EQ(cad.Width(), 900);
    EXPECT_EQ(cad.Height(), 5000);
    EXPECT_EQ(cad.GetLayersCount(), 2);
    EXPECT_EQ(cad.GetShapeByNo(0), mine);
    EXPECT_EQ(mine->Name(), "Shape0");
    EXPECT_EQ(cad.GetShapesCount(), 1 + block.GetShapesCount());
    for (int i = 1; i < cad.GetShapesCount(); ++i) EXPECT_EQ(cad.GetShapeByNo(i)->LayerId(), 1);
    ExpectIntact(cad);
    // The block's link line still joins its two link points.
    const auto* line = shape_cast<TMyLine>(cad.GetShapeByNo(1 + 10));
    ASSERT_NE(line, nullptr);
    EXPECT_EQ(cad.GetShapeByNo(line->StartSpNo())->kind(), TShapeKind::LinkPoint);
}

// ---------------------------------------------------------------- clipboard

TEST(Clipboard, CopyPasteMakesNewShapesBesideTheOriginals) {
    TMyCAD cad;
    TMyLinkPoint* a = AddRect<TMyLinkPoint>(cad, 0, 0, 8, 8);
    TMyLinkPoint* b = AddRect<TMyLinkPoint>(cad, 100, 100, 108, 108);
    a->AddLinkPoint({4, 4});
    b->AddLinkPoint({104, 104});
    AddJoiningLine(cad, a, b);
    TMyRectangle* alone = AddRect(cad, 200, 0, 240, 30);
    for (TMyShape* s : {static_cast<TMyShape*>(a), static_cast<TMyShape*>(b), cad.GetShapeByNo(2)})
        cad.AddWorkingShapes(s);
    ASSERT_TRUE(cad.Copy());
    EXPECT_TRUE(TMyCAD::CanPaste());
    EXPECT_TRUE(Clipboard()->HasFormat("image/png"));
    EXPECT_TRUE(Clipboard()->Data("image/svg+xml").contains("<svg"));

    cad.NewLayer("Paste here", true);
    ASSERT_TRUE(cad.Paste());
    ASSERT_EQ(cad.GetShapesCount(), 7);
    ExpectIntact(cad);
    for (int i = 4; i < 7; ++i) {
        TMyShape* s = cad.GetShapeByNo(i);
        EXPECT_EQ(s->GetShapeId(), i);
        EXPECT_EQ(s->Name(), QStringLiteral("Shape%1").arg(i));
        EXPECT_EQ(s->LayerId(), 1);
    }
    // Moved aside, the copy of the line joining the copies of its ends.
    EXPECT_EQ(cad.GetShapeByNo(4)->GetPoint(0).x, a->GetPoint(0).x + 10);
    const auto* line = shape_cast<TMyLine>(cad.GetShapeByNo(6));
    ASSERT_NE(line, nullptr);
    EXPECT_EQ(line->StartSpNo(), 4);
    EXPECT_EQ(line->EndSpNo(), 5);
    EXPECT_EQ(cad.GetSelectedShapesCount(), 3);
    // Pasting again moves further; one undo step takes a paste back.
    ASSERT_TRUE(cad.Paste());
    EXPECT_EQ(cad.GetShapeByNo(7)->GetPoint(0).x, a->GetPoint(0).x + 20);
    cad.Undo();
    cad.Undo();
    EXPECT_EQ(cad.GetShapesCount(), 4);

    // Cut and paste puts the shape back where it was.
    cad.RemoveAllWorkingShapes();
    cad.AddWorkingShapes(alone);
    const TMyPoint where = alone->GetPoint(0);
    ASSERT_TRUE(cad.Cut());
    EXPECT_EQ(cad.GetShapesCount(), 3);
    ASSERT_TRUE(cad.Paste());
    EXPECT_EQ(cad.GetShapeByNo(3)->GetPoint(0), where);
}

TEST(Clipboard, NothingSelectedOrNothingOursDoesNothing) {
    TMyCAD cad;
    AddRect(cad, 0, 0, 5, 5);
    Clipboard()->SetAsText("plain text");
    EXPECT_FALSE(cad.Copy());
    EXPECT_FALSE(TMyCAD::CanPaste());
    EXPECT_FALSE(cad.Paste());
    EXPECT_EQ(cad.GetShapesCount(), 1);
}
