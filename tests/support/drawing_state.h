// The whole drawing as text, shape by shape in list order, and the checks
// every edit must leave true: numbers equal indices, ids are unique, and
// parent/member and link references exist and agree both ways.
#pragma once

#include "cad/canvas/mycad.h"
#include "cad/shapes/line.h"
#include "cad/shapes/shape_factory.h"

#include <gtest/gtest.h>
#include <algorithm>
#include <set>
#include <sstream>
#include <string>

namespace faroven::test {

// Class, name, number, relations, geometry and the edited properties; ids
// are left out (a regrouped group gets a new one).
inline std::string DrawingState(const TMyCAD& cad) {
    std::ostringstream os;
    for (TMyShape* s : cad.MyShapes()) {
        os << ShapeClassName(s).toStdString() << ' ' << s->Name().toStdString() << " #" << s->ShapeNo() << " parent "
           << s->ParentShapeNo() << " children";
        for (int c : std::as_const(*s).ChildShapeNos()) os << ' ' << c;
        os << " links";
        for (uint32_t l : std::as_const(*s).LinkShapeNos()) os << ' ' << l;
        if (auto* line = dynamic_cast<TMyLine*>(s)) os << " ends " << line->StartSpNo() << ' ' << line->EndSpNo();
        os << " layer " << s->LayerId() << " angle " << s->Angle() << " locked " << s->Locked() << " flip "
           << s->IsFlipHorz() << s->IsFlipVert() << " info '" << s->Info().toStdString() << "' pen "
           << s->Pen()->Color() << " points";
        for (const TMyPoint& p : std::as_const(*s).Points()) os << " (" << p.x << ',' << p.y << ')';
        const TMyPoint t = s->TextPoint(), c = s->CenterPoint();
        os << " text (" << t.x << ',' << t.y << ") centre (" << c.x << ',' << c.y << ")\n";
    }
    return os.str();
}

// A line from a to b whose ends are attached to them, both sides recorded.
// Line is TMyLine or a descendant; only a TMyLinkLine's record keeps its ends.
template <class Line = TMyLine>
Line* AddJoiningLine(TMyCAD& cad, TMyShape* a, TMyShape* b) {
    auto* line = new Line(&cad);
    line->AddPoint(a->GetCenterPoint());
    line->AddPoint(b->GetCenterPoint());
    cad.AddNewShape(line);
    line->SetStartSpNo(a->ShapeNo());
    line->SetEndSpNo(b->ShapeNo());
    AddLinklineShape(a, uint32_t(line->ShapeNo()));
    AddLinklineShape(b, uint32_t(line->ShapeNo()));
    return line;
}

inline void ExpectIntact(const TMyCAD& cad) {
    std::set<int> ids;
    const int n = cad.GetShapesCount();
    auto valid = [n](int no) { return no >= 0 && no < n; };
    for (int i = 0; i < n; ++i) {
        TMyShape* s = cad.GetShapeByNo(i);
        ASSERT_NE(s, nullptr) << "slot " << i;
        EXPECT_EQ(s->ShapeNo(), i) << s->Name().toStdString();
        EXPECT_TRUE(ids.insert(s->GetShapeId()).second) << "id " << s->GetShapeId() << " twice";
        if (s->HasParentShape()) {
            ASSERT_TRUE(valid(s->ParentShapeNo())) << s->Name().toStdString();
            const auto& siblings = std::as_const(*cad.GetShapeByNo(s->ParentShapeNo())).ChildShapeNos();
            EXPECT_NE(std::find(siblings.begin(), siblings.end(), i), siblings.end()) << s->Name().toStdString();
        }
        for (int c : std::as_const(*s).ChildShapeNos()) {
            ASSERT_TRUE(valid(c)) << s->Name().toStdString();
            EXPECT_EQ(cad.GetShapeByNo(c)->ParentShapeNo(), i) << s->Name().toStdString();
        }
        for (uint32_t l : std::as_const(*s).LinkShapeNos()) {
            ASSERT_TRUE(valid(int(l))) << s->Name().toStdString();
            auto* line = dynamic_cast<TMyLine*>(cad.GetShapeByNo(int(l)));
            ASSERT_NE(line, nullptr);
            EXPECT_TRUE(line->StartSpNo() == i || line->EndSpNo() == i) << s->Name().toStdString();
        }
        if (auto* line = dynamic_cast<TMyLine*>(s)) {
            for (int end : {line->StartSpNo(), line->EndSpNo()}) {
                if (end < 0) continue;
                ASSERT_TRUE(valid(end)) << s->Name().toStdString();
                const auto& links = std::as_const(*cad.GetShapeByNo(end)).LinkShapeNos();
                EXPECT_NE(std::find(links.begin(), links.end(), uint32_t(i)), links.end()) << s->Name().toStdString();
            }
        }
    }
}

}  // namespace faroven::test
