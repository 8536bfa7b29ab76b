// Shape records: the base record byte for byte, the Str length rule, what
// each file version carries, every class's tail, and records that are cut
// short or claim more than the stream holds.
#include "cad/canvas/mycad.h"
#include "cad/persistence/stream_io.h"
#include "cad/shapes/arc.h"
#include "cad/shapes/image.h"
#include "cad/shapes/line.h"
#include "cad/shapes/link.h"
#include "cad/shapes/link_point.h"
#include "cad/shapes/shape_factory.h"
#include "cad/shapes/text.h"
#include "fuzz/shape_record_harness.h"
#include "support/test_support.h"

#include <QDirIterator>
#include <QFile>
#include <QMetaProperty>
#include <cmath>
#include <cstring>
#include <functional>
#include <gtest/gtest.h>

using namespace faroven;

namespace {

// Builds expected bytes field by field, little-endian.
struct Bytes {
    QByteArray b;
    template <class T>
    Bytes& raw(T v) {
        b.append(reinterpret_cast<const char*>(&v), sizeof v);
        return *this;
    }
    Bytes& i32(int32_t v) { return raw(v); }
    Bytes& f32(float v) { return raw(v); }
    Bytes& u8(uint8_t v) { return raw(v); }
    Bytes& zeros(int n) {
        b.append(n, '\0');
        return *this;
    }
    Bytes& str(const QByteArray& text) { return i32(int32_t(text.size())).add(text); }
    Bytes& ext(long double v) {  // x87 extended: the first 10 bytes of a long double here
        char ten[16] = {};
        std::memcpy(ten, &v, sizeof v < 10 ? sizeof v : 10);
        b.append(ten, 10);
        return *this;
    }
    Bytes& add(const QByteArray& more) {
        b.append(more);
        return *this;
    }
};

QByteArray recordOf(TMyShape& shape) {
    TMemoryStream s;
    shape.SaveToStream(s);
    return s.ToByteArray();
}

// Reads the bytes into the shape and says how many were left over.
int64_t readInto(TMyShape& shape, const QByteArray& bytes) {
    auto s = TMemoryStream::FromBytes(bytes);
    shape.LoadFromStream(*s);
    return s->Size() - s->Position();
}

// ---------------------------------------------------------------- the base record

TEST(ShapeRecord, FullBaseRecordByteForByte) {
    TMyCAD cad;
    TMyShape s(&cad);
    s.SetName("S1");
    s.SetShapeId(5);
    s.SetShapeNo(2);
    s.SetLayerId(3);
    s.SetParentShapeNo(1);
    s.SetChildShapeNos({7, 8});
    s.SetLinkShapeNos({9});
    s.SetPoints({{1.5f, 2.5f}, {3, 4}});
    s.SetLinkPoints({{5, 6}});
    s.SetTextPoint({7, 8});
    s.SetTag(11);
    s.SetAngle(0.5f);
    s.Brush()->SetColor(0x123456);
    s.Brush()->SetStyle(bsCross);
    s.SetCaption("Cap");
    s.SetColorBegin(0x0000FF);
    s.SetColorEnd(0x00FF00);
    s.Font()->SetName("Arial");
    s.Font()->SetCharset(ANSI_CHARSET);
    s.Font()->SetColor(0x808080);
    s.Font()->SetSize(12);
    s.Font()->SetPitch(fpFixed);
    s.Font()->SetStyle({fsBold, fsUnderline});
    s.SetGradientStyle(gsLinearV);
    s.SetInfo("Inf");
    s.Pen()->SetColor(0x0A0B0C);
    s.Pen()->SetMode(pmXor);
    s.Pen()->SetStyle(psDot);
    s.Pen()->SetWidth(3);
    s.UserData()->AddKeyandValue("k", "v");
    s.SetIsFlipHorz(true);
    s.SetVisible(false);
    s.MultiInfo()->SetLines({"a", "bc"});
    s.SetMultiInfoAlignment(taRightJustify);
    s.SetLogHeight(20);
    s.SetLogUse(true);
    s.SetLogWidth(30);
    s.SetLocked(true);
    s.SetPenStyleEndCapType(psectFLAT);
    s.SetPenStyleJoinType(psjtMITER);
    s.SetHotShow(false);
    s.SetResizeEnable(false);
    s.SetRotateEnable(true);

    Bytes e;
    e.str("S1").i32(5).i32(2).i32(3).i32(1);
    e.i32(2).i32(7).i32(8).i32(1).i32(9);
    e.i32(2).f32(1.5f).f32(2.5f).f32(3).f32(4).i32(1).f32(5).f32(6);
    e.f32(7).f32(8).i32(11).f32(0.5f);
    e.zeros(8).i32(0x123456).u8(6).str("Cap").i32(0xFF).i32(0xFF00);
    e.str("Arial").u8(0).i32(0x808080).i32(-16).i32(12).u8(2).i32(96).u8(1 | 4);
    e.zeros(8).u8(10).str("Inf").i32(0x0A0B0C).u8(14).u8(2).i32(3);
    e.i32(1).str("k").str("v").u8(1).u8(0).u8(0);
    e.i32(2).str("a").str("bc").u8(1);
    e.i32(20).u8(1).i32(30).u8(1);
    e.u8(2).u8(2).u8(0).u8(0).u8(1);
    const QByteArray saved = recordOf(s);
    EXPECT_EQ(saved.toHex(' '), e.b.toHex(' '));

    TMyShape back(&cad);
    EXPECT_EQ(readInto(back, saved), 0);
    EXPECT_EQ(recordOf(back), saved);
    EXPECT_EQ(back.Name(), "S1");
    EXPECT_EQ(back.ChildShapeNos(), (std::vector<int32_t>{7, 8}));
    EXPECT_EQ(back.FontRef().Name(), "Arial");
    EXPECT_EQ(back.UserData()->GetValueByKey("k"), "v");
    EXPECT_EQ(back.MultiInfo()->Lines(), (QStringList{"a", "bc"}));
}

// The caption's Str: the prefix holds the full length, only length mod 256 bytes follow.
TEST(ShapeRecord, StrKeepsTheLengthButOnlyItsLowByteOfText) {
    struct Case {
        int length, written;
    };
    const Case cases[] = {{0, 0}, {255, 255}, {256, 0}, {300, 44}};
    constexpr int kCaptionAt = 65;  // in a record without name, relations or points
    TMyCAD cad;
    TMyShape plain(&cad);
    const QByteArray empty = recordOf(plain);
    for (const Case& c : cases) {
        SCOPED_TRACE(c.length);
        QString text;
        for (int i = 0; i < c.length; ++i) text += QChar('a' + i % 26);
        TMyShape s(&cad);
        s.SetCaption(text);
        const QByteArray saved = recordOf(s);
        EXPECT_EQ(saved.mid(kCaptionAt, 4), Bytes().i32(c.length).b);
        EXPECT_EQ(saved.mid(kCaptionAt + 4, c.written), text.left(c.written).toLatin1());
        EXPECT_EQ(saved.size(), empty.size() + c.written);
        TMyShape back(&cad);
        EXPECT_EQ(readInto(back, saved), 0);
        EXPECT_EQ(back.Caption(), text.left(c.written));
    }
    EXPECT_EQ(empty.mid(kCaptionAt, 4), QByteArray(4, '\0'));
}

// ---------------------------------------------------------------- versions

enum class Coord { None, Extended, Single };

// What a version's base record carries beyond the fields every version has.
struct VersionLayout {
    const char* version;
    Coord coord;
    bool tagAngle, reserved8, reserved2, userData, flipsVisible, multiInfo, log, lastFive;
};
const VersionLayout kLayouts[] = {
    {"XP.2", Coord::None, false, true, true, false, false, false, false, false},
    {"XP.3", Coord::Extended, true, true, true, false, false, false, false, false},
    {"XP.4", Coord::Extended, true, true, true, false, false, false, false, false},
    {"XP.5", Coord::Extended, true, true, true, false, false, false, false, false},
    {"XP.6", Coord::Single, true, true, false, false, false, false, false, false},
    {"XP.7", Coord::Single, true, false, false, false, false, false, false, false},
    {"XP.8", Coord::Single, true, true, false, true, false, false, false, false},
    {"XP.9", Coord::Single, true, true, false, true, true, false, false, false},
    {"XP.a", Coord::Single, true, true, false, true, true, false, false, false},
    {"XP.e", Coord::Single, true, true, false, true, true, true, false, false},
    {"XP.h", Coord::Single, true, true, false, true, true, true, true, false},
    {"XP.i", Coord::Single, true, true, false, true, true, true, true, false},
    {"XP.j", Coord::Single, true, true, false, true, true, true, true, true},
    {"XP.b", Coord::None, false, false, false, false, false, false, false, false},
    {"", Coord::None, false, false, false, false, false, false, false, false},
};

const VersionLayout& layoutOf(const char* version) {
    for (const VersionLayout& l : kLayouts)
        if (qstrcmp(l.version, version) == 0) return l;
    throw std::logic_error("no such layout");
}

// 1 + 2^-24 + 2^-60: through a double it would round to a tie and then to 1;
// the nearest Single is 1 + 2^-23.
const long double kTricky = 1.0L + std::ldexp(1.0L, -24) + std::ldexp(1.0L, -60);

Bytes& coordinate(Bytes& b, Coord c, long double v) {
    if (c == Coord::Extended) return b.ext(v);
    return b.f32(float(v));
}

// A base record as the version writes it.
QByteArray baseRecord(const VersionLayout& l, uint8_t gradient = 9) {
    Bytes b;
    b.str("Old").i32(4).i32(1).i32(2).i32(-1).i32(1).i32(5).i32(0);
    b.i32(2);
    if (l.coord != Coord::None)
        for (long double v : {kTricky, 2.25L, -3.5L, 4.0L}) coordinate(b, l.coord, v);
    b.i32(1);
    if (l.coord != Coord::None) coordinate(coordinate(b, l.coord, 5), l.coord, 6);
    if (l.coord != Coord::None) coordinate(coordinate(b, l.coord, 7.25L), l.coord, 8);
    if (qstrcmp(l.version, "XP.2") == 0) b.f32(7.25f).add(QByteArray(6, '\xEE')).f32(8).add(QByteArray(6, '\xEE'));
    if (l.tagAngle) coordinate(b.i32(11), l.coord, 0.75L);
    b.zeros(8).i32(0x00FF00).u8(bsSolid).str("C").i32(1).i32(2);
    b.str("Arial").u8(0).i32(0).i32(-13).i32(10).u8(0).i32(96).u8(0);
    if (l.reserved8) b.zeros(8);
    b.u8(gradient);
    if (l.reserved2) b.u8(0xAA).u8(0xBB);
    b.str("I").i32(0xFF).u8(pmCopy).u8(psDash).i32(4);
    if (l.userData) b.i32(1).str("k").str("v");
    if (l.flipsVisible) b.u8(1).u8(0).u8(0);
    if (l.multiInfo) b.i32(1).str("m").u8(taLeftJustify);
    if (l.log) b.i32(20).u8(1).i32(33).u8(1);
    if (l.lastFive) b.u8(psectSQUARE).u8(psjtBEVEL).u8(0).u8(0).u8(1);
    return b.b;
}

// A shape whose fields differ from what the records above store, so that
// fields a version lacks are seen to keep their values.
void giveOwnValues(TMyShape& s) {
    s.SetTag(77);
    s.UserData()->AddKeyandValue("own", "1");
    s.MultiInfo()->SetLines({"own"});
    s.SetLogWidth(55);
    s.SetRotateEnable(false);
}

TEST(ShapeRecordVersions, EachVersionReadsExactlyItsFields) {
    for (const VersionLayout& l : kLayouts) {
        SCOPED_TRACE(l.version);
        TMyCAD cad;
        cad.SetDiskFileVersion(l.version);
        TMyShape s(&cad);
        giveOwnValues(s);
        ASSERT_EQ(readInto(s, baseRecord(l)), 0);
        EXPECT_EQ(s.Caption(), "C");
        EXPECT_EQ(s.Info(), "I");
        EXPECT_EQ(s.GradientStyle(), gsLinearH);
        EXPECT_EQ(s.Pen()->Width(), 4);
        EXPECT_EQ(s.ChildShapeNos(), (std::vector<int32_t>{5}));
        ASSERT_EQ(s.GetPointsCount(), 2);
        ASSERT_EQ(s.GetLinkPointsCount(), 1);
        const bool coords = l.coord != Coord::None;
        EXPECT_EQ(s.GetPoint(0).x, coords ? std::nextafter(1.0f, 2.0f) : 0.0f);
        EXPECT_EQ(s.GetPoint(1).y, coords ? 4.0f : 0.0f);
        EXPECT_EQ(s.GetLinkPoint(0).x, coords ? 5.0f : 0.0f);
        const bool textPoint = coords || qstrcmp(l.version, "XP.2") == 0;
        EXPECT_EQ(s.TextPoint().x, textPoint ? 7.25f : 0.0f);
        EXPECT_EQ(s.TextPoint().y, textPoint ? 8.0f : 0.0f);
        EXPECT_EQ(s.Tag(), l.tagAngle ? 11 : 77);
        EXPECT_EQ(s.Angle(), l.tagAngle ? 0.75f : 0.0f);
        EXPECT_EQ(s.UserData()->GetCount(), l.userData ? 2 : 1);  // appended to the shape's own
        EXPECT_EQ(s.IsFlipHorz(), l.flipsVisible);
        EXPECT_EQ(s.Visible(), !l.flipsVisible);
        EXPECT_EQ(s.MultiInfo()->Lines(), l.multiInfo ? QStringList({"own", "m"}) : QStringList({"own"}));
        EXPECT_EQ(s.LogWidth(), l.log ? 33 : 55);
        EXPECT_EQ(s.RotateEnable(), l.lastFive);
    }
}

// The tails that depend on the version, after the base record of that version.
TEST(ShapeRecordVersions, TailsFollowTheirVersions) {
    struct Case {
        const char* className;
        const char* version;
        QByteArray tail;
        std::function<void(TMyShape*)> check;
    };
    const QByteArray lineTail = Bytes().i32(15).u8(40).u8(2).u8(ARight).b;
    const QByteArray ends = Bytes().i32(3).i32(0).i32(-1).i32(-1).b;
    TBitmap bitmap(3, 2, pf24bit);
    bitmap.Canvas()->Brush()->SetColor(clRed);
    bitmap.Canvas()->FillRect({0, 0, 3, 2});
    TMemoryStream bmp;
    WriteBitmapBuffer(bmp, &bitmap);
    const QByteArray bmpBytes = bmp.ToByteArray();
    auto text = [](TMyShape* s) { return static_cast<TMyText*>(s); };
    auto image = [](TMyShape* s) { return static_cast<TMyImage*>(s); };
    auto link = [](TMyShape* s) { return static_cast<TMyLinkLine*>(s); };
    const Case cases[] = {
        {"TMyLinkLine", "XP.4", lineTail + ends,
         [&](TMyShape* s) {
             EXPECT_EQ(link(s)->StartSpNo(), 3);
             EXPECT_EQ(link(s)->ArrowStyle(), ARight);
             EXPECT_EQ(link(s)->LinkLineDrawStyle(), lldsHV);
         }},
        {"TMyLinkLine", "XP.5", lineTail + ends + Bytes().u8(lldsFree).b,
         [&](TMyShape* s) { EXPECT_EQ(link(s)->LinkLineDrawStyle(), lldsFree); }},
        {"TMyText", "XP.9", Bytes().u8(1).u8(1).b,
         [&](TMyShape* s) {
             EXPECT_TRUE(text(s)->IsSolid());
             EXPECT_EQ(text(s)->Lines()->Lines(), QStringList({"own"}));
         }},
        {"TMyText", "XP.a", Bytes().u8(1).u8(1).i32(1).str("L").u8(jvCenter).u8(jhRight).u8(1).b,
         [&](TMyShape* s) {
             EXPECT_EQ(text(s)->Lines()->Lines(), QStringList({"own", "L"}));
             EXPECT_EQ(text(s)->VAlignment(), jvCenter);
             EXPECT_EQ(text(s)->HAlignment(), jhRight);
             EXPECT_TRUE(text(s)->WordWrap());
         }},
        {"TMyImage", "XP.8", bmpBytes,
         [&](TMyShape* s) {
             EXPECT_EQ(image(s)->Bitmap()->Width(), 3);
             EXPECT_EQ(test::PixelAt(*image(s)->Bitmap(), 2, 1), clRed);
             EXPECT_EQ(image(s)->Brightness(), 0);
         }},
        {"TMyImage", "XP.9", Bytes().zeros(8).i32(-20).i32(30).u8(1).u8(1).u8(1).b,
         [&](TMyShape* s) {
             EXPECT_EQ(image(s)->Bitmap()->Width(), 1);  // no bitmap stored: the shape's own stays
             EXPECT_EQ(image(s)->Brightness(), -20);
             EXPECT_TRUE(image(s)->GrayScale());
             EXPECT_EQ(image(s)->TransparentMode(), tmAuto);
         }},
        {"TMyImage", "XP.i", Bytes().zeros(8).i32(0).i32(0).u8(0).u8(0).u8(0).i32(0x00FF00).u8(tmFixed).zeros(3).b,
         [&](TMyShape* s) {
             EXPECT_EQ(image(s)->TransparentColor(), TColor(0x00FF00));
             EXPECT_EQ(image(s)->TransparentMode(), tmFixed);
         }},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.className) + " " + c.version);
        TMyCAD cad;
        cad.SetDiskFileVersion(c.version);
        std::unique_ptr<TMyShape> s(NewShapeOfClass(c.className, &cad));
        if (auto* t = shape_cast<TMyText>(s.get())) t->Lines()->SetLines({"own"});
        if (auto* i = shape_cast<TMyImage>(s.get())) i->Bitmap()->SetSize(1, 1);
        ASSERT_EQ(readInto(*s, baseRecord(layoutOf(c.version)) + c.tail), 0);
        c.check(s.get());
    }
}

// ---------------------------------------------------------------- every class

// Values unlike the defaults for the fields each class stores.
void fillForClass(TMyShape* s) {
    s->SetPoints({{1, 2}, {30, 2}, {30, 40}, {1, 40}});
    s->SetLinkPoints({{15, 21}});
    s->SetCaption("caption");
    s->SetInfo("info");
    s->UserData()->AddKeyandValue("k", "v");
    s->MultiInfo()->Add("line");
    s->Font()->SetSize(14);
    if (auto* line = dynamic_cast<TMyLine*>(s)) {
        line->SetArrowAngle(25);
        line->SetArrowLength(12);
        line->SetArrowOffset(3);
        line->SetArrowStyle(ADouble);
        line->SetStartSpNo(4);
        line->SetEndSpPtId(2);
    }
    if (auto* rule = shape_cast<TMyRuleLine>(s)) {
        rule->SetShowUserInfo(true);
        rule->SetTickStyle(tsNone);
        rule->SetUserInfo("12 m");
    }
    if (auto* link = shape_cast<TMyLinkLine>(s)) link->SetLinkLineDrawStyle(lldsFree);
    if (auto* arc = shape_cast<TMyElliArc>(s)) {
        arc->SetArcMode(amEllipse);
        arc->SetArcStyle(asSector);
    }
    if (auto* point = shape_cast<TMyLinkPoint>(s)) point->SetSize(20);
    if (auto* text = shape_cast<TMyText>(s)) {
        text->SetIsBorder(true);
        text->Lines()->SetLines({"one", "two"});
        text->SetVAlignment(jvBottom);
        text->SetHAlignment(jhCenter);
        text->SetWordWrap(true);
    }
    if (auto* image = shape_cast<TMyImage>(s)) {
        image->Bitmap()->SetPixelFormat(pf24bit);
        image->Bitmap()->SetSize(4, 3);
        image->SetBrightness(10);
        image->SetContrast(-5);
        image->SetTransparent(true);
        image->SetTransparentColor(clBlue);
        image->SetTransparentMode(tmFixed);
    }
}

// Every value property the class publishes, by name (owned objects such as
// the pen are compared through the record's bytes).
QVariantMap publishedValues(const TMyShape* s) {
    QVariantMap values;
    const QMetaObject* meta = s->metaObject();
    for (int i = 0; i < meta->propertyCount(); ++i)
        if (!(meta->property(i).metaType().flags() & QMetaType::IsPointer))
            values[meta->property(i).name()] = meta->property(i).read(s);
    return values;
}

TEST(ShapeRecordClasses, EveryClassRoundTripsAndEveryCutRaises) {
    for (int i = 0; i < fuzz::kRecordClasses; ++i) {
        const QString name = ShapeClassNames().at(i);
        SCOPED_TRACE(name.toStdString());
        TMyCAD cad;
        std::unique_ptr<TMyShape> s(NewShapeOfClass(name, &cad));
        fillForClass(s.get());
        const QByteArray saved = recordOf(*s);

        std::unique_ptr<TMyShape> back(NewShapeOfClass(name, &cad));
        EXPECT_EQ(readInto(*back, saved), 0);
        EXPECT_EQ(recordOf(*back), saved);
        EXPECT_EQ(publishedValues(back.get()), publishedValues(s.get()));

        for (int cut = 0; cut < saved.size(); ++cut) {
            std::unique_ptr<TMyShape> part(NewShapeOfClass(name, &cad));
            EXPECT_THROW(readInto(*part, saved.left(cut)), EReadError) << "cut at " << cut;
        }
    }
}

TEST(ShapeRecordClasses, ImageWithoutBitmapWritesEightZeroBytes) {
    TMyCAD cad;
    TMyImage image(&cad);
    TMemoryStream base;
    image.TMyShape::SaveToStream(base);
    const QByteArray saved = recordOf(image);
    ASSERT_GT(saved.size(), base.Size() + 8);
    EXPECT_EQ(saved.left(int(base.Size())), base.ToByteArray());
    EXPECT_EQ(saved.mid(int(base.Size()), 8), QByteArray(8, '\0'));
}

// ---------------------------------------------------------------- bad records

TEST(ShapeRecordBadInput, CountsAndValuesThatCannotBeRightRaiseAtTheirOffset) {
    struct Case {
        const char* what;
        const char* version;
        QByteArray bytes;
        int64_t offset;
    };
    const QByteArray head = Bytes().str("").i32(1).i32(0).i32(0).i32(-1).b;  // 20 bytes
    const QByteArray tenBytes(10, '\0');
    auto padTo30 = [](QByteArray b) { return b + QByteArray(30 - b.size(), '\0'); };
    const Case cases[] = {
        {"children", "XP.j", padTo30(head + Bytes().i32(2000000000).b), 20},
        {"link lines", "XP.j", padTo30(head + Bytes().i32(0).i32(2000000000).b), 24},
        {"points", "XP.j", padTo30(head + Bytes().i32(0).i32(0).i32(2000000000).b), 28},
        {"XP.2 points, one byte each", "XP.2", head + Bytes().i32(0).i32(0).i32(500).b + tenBytes, 28},
        {"gradient style", "XP.j", baseRecord(layoutOf("XP.j"), 200), -1},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        TMyCAD cad;
        cad.SetDiskFileVersion(c.version);
        TMyShape s(&cad);
        try {
            readInto(s, c.bytes);
            ADD_FAILURE() << "read";
        } catch (const EFileFormatError& e) {
            if (c.offset >= 0) EXPECT_EQ(e.Offset(), c.offset);
        }
    }
}

TEST(ShapeRecordBadInput, NegativeCountsReadAsNone) {
    QByteArray bytes = baseRecord(layoutOf("XP.j"));
    bytes.replace(35, 4, Bytes().i32(-7).b);  // the point count; its two points' bytes go too
    bytes.remove(39, 16);
    TMyCAD cad;
    TMyShape s(&cad);
    EXPECT_EQ(readInto(s, bytes), 0);
    EXPECT_EQ(s.GetPointsCount(), 0);
    EXPECT_EQ(s.GetLinkPointsCount(), 1);
}

// Inputs stored from fuzzing, and the seeds, through the fuzz target's checks.
TEST(ShapeRecordBadInput, StoredFuzzInputs) {
    int replayed = 0;
    QDirIterator it(QStringLiteral(FAROVEN_TEST_DATA "/../../fuzz/corpus/shape_record_fuzzer"), QDir::Files);
    while (it.hasNext()) {
        QFile file(it.next());
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        const QByteArray bytes = file.readAll();
        SCOPED_TRACE(it.filePath().toStdString());
        fuzz::runShapeRecord(reinterpret_cast<const uint8_t*>(bytes.constData()), size_t(bytes.size()));
        ++replayed;
    }
    EXPECT_GE(replayed, 5);
}

}  // namespace
