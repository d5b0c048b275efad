#include "iff/container.h"

#include "chunks/ilbm_chunks.h"
#include "iff/read_only_check.h"
#include "iff/registry.h"
#include "support/iff_builder.h"
#include "support/loading.h"

#include <gtest/gtest.h>

#include <string>

namespace {

const Bytes TAG = Chunk("GRAB", {0, 1, 0, 2});

Bytes TagOf(u8 value) {
    return Chunk("GRAB", {0, value, 0, 0});
}

u32 ValueOf(const IffChunk* chunk) {
    const auto* const grab = dynamic_cast<const GrabChunk*>(chunk);
    return grab ? grab->m_nX : 0;
}

Bytes Asker() {
    return Chunk("BODY", {1, 2});
}

std::string Id(const IffChunk& chunk) {
    return std::string(reinterpret_cast<const char*>(&chunk.m_Id.m_nValue), 4);
}

// Ids of the children in file order, unknown ones in brackets.
std::string ChildrenOf(const IffContainer& container) {
    std::string text;
    for (const IffChunkNode* node = container.m_pFirst; node; node = node->m_pNext) {
        EXPECT_EQ(node->m_pChunk->m_pParent, &container);
        EXPECT_EQ(node->m_pChunk->m_pNode, node);
        const std::string id = Id(*node->m_pChunk);
        text += node->m_pChunk->IsUnknown() ? "[" + id + "]" : id;
    }
    return text;
}

TEST(Load, ATreeInFileOrder) {
    const LoadedIff file(Form("ILBM", {Bmhd({.width = 5}), Chunk("CRNG", {1, 2, 3}), Asker(), TAG}));
    ASSERT_TRUE(file.bLoaded);
    EXPECT_EQ(file.Root().m_Type, ID_ILBM);
    EXPECT_EQ(ChildrenOf(file.Root()), "BMHD[CRNG]BODYGRAB");
    const auto& raw = ChildAs<IffUnknownChunk>(file.Root(), 1);
    EXPECT_EQ(Bytes(raw.m_pData.Data(), raw.m_pData.Data() + raw.m_nSize), (Bytes{1, 2, 3}));
}

TEST(Load, WhatIsAllowedWhere) {
    struct Case {
        const char* container;
        const char* children;
    };
    for (const Case c : {Case{"FORM", "FORMLISTCAT [PROP]BMHD"}, Case{"LIST", "FORMLISTCAT PROP[BMHD]"},
                         Case{"CAT ", "FORMLISTCAT [PROP][BMHD]"}}) {
        const LoadedIff file(
            Container(c.container, "ILBM",
                      {Form("ILBM", {}), List("ILBM", {}), Cat("ILBM", {}), Prop("ILBM", {}), Bmhd({})}));
        ASSERT_TRUE(file.bLoaded);
        EXPECT_EQ(ChildrenOf(file.Root()), c.children);
    }
    const LoadedIff file(List("ILBM", {Prop("ILBM", {Form("ILBM", {}), Prop("ILBM", {}), Bmhd({})})}));
    EXPECT_EQ(ChildrenOf(ChildAs<IffProp>(file.Root(), 0)), "[FORM][PROP]BMHD");
}

TEST(Load, PictureChunksAreKnownInTheirOwnFormsOnly) {
    const LoadedIff file(Form("MIPM", {Bmhd({}), Form("ILBM", {Bmhd({})})}));
    EXPECT_EQ(ChildrenOf(file.Root()), "[BMHD]FORM");
    EXPECT_EQ(ChildrenOf(ChildAs<IffForm>(file.Root(), 1)), "BMHD");
}

TEST(Load, RefusalsBesideTheirControls) {
    const Bytes odd = Form("ILBM", {Bmhd({}), Chunk("BODY", {1, 2, 3, 4, 5})});
    ASSERT_EQ(odd.size(), 54u);
    const auto child = [](u32 declared) { return Form("ILBM", {Chunk("CRNG", Bytes(6), declared)}); };
    const auto withOutermost = [](std::string_view id) { return Container(id, "ILBM", {Bmhd({})}); };
    struct Case {
        const char* name;
        Bytes file;
        bool loads;
    };
    for (const Case& c : {
             Case{"whole", odd, true},
             Case{"bytes behind the end", ByteBuilder().Append(odd).U32(1), true},
             Case{"the last pad byte is missing", Truncated(odd, 1), false},
             Case{"no room for the pad byte", Form("ILBM", {Bmhd({}), Chunk("BODY", Bytes(5))}, 45), false},
             Case{"a child as large as its parent allows", child(6), true},
             Case{"a child that is larger", child(8), false},
             Case{"a child of 2 GiB", child(0x80000000), false},
             Case{"a child of nearly 4 GiB", child(0xFFFFFFFE), false},
             Case{"LIST", withOutermost("LIST"), true},
             Case{"CAT", withOutermost("CAT "), true},
             Case{"PROP", withOutermost("PROP"), false},
             Case{"another id", withOutermost("form"), false},
             Case{"four zero bytes", withOutermost({"\0\0\0\0", 4}), false},
             Case{"no type", Chunk("FORM", {}), false},
             Case{"nothing", {}, false},
             Case{"one byte", {'F'}, false},
             Case{"BMHD of 19 bytes", Form("ILBM", {Chunk("BMHD", Bytes(19))}), false},
             Case{"BMHD of 24 bytes", Form("ILBM", {Chunk("BMHD", Bytes(24)), Asker()}), true},
             Case{"GRAB of 3 bytes", Form("ILBM", {Chunk("GRAB", Bytes(3))}), false},
             // What no class reads is not looked for.
             Case{"the file ends behind what is read", Form("ILBM", {Chunk("GRAB", Bytes(4), 1000)}, 1012),
                  true},
             Case{"the file ends before it", Form("ILBM", {Chunk("BODY", Bytes(4), 1000)}, 1012), false},
             Case{"an overrun that wraps",
                  Form("ILBM", {Chunk("GRAB", Bytes(4), 0x7FFFFFFE), Chunk("GRAB", Bytes(4), 0x7FFFFFFE)},
                       0x7FFFFFFE),
                  false},
         })
        EXPECT_EQ(Loads(c.file), c.loads) << c.name;
}

TEST(Load, EveryTruncationIsRefused) {
    const Bytes file = List("ILBM", {Prop("ILBM", {Bmhd({}), Cmap({RED, GREEN})}),
                                     Form("ILBM", {Chunk("CRNG", Bytes(5)), Asker()})});
    ASSERT_TRUE(Loads(file));
    for (u64 missing = 1; missing <= file.size(); ++missing)
        EXPECT_FALSE(Loads(Truncated(file, missing))) << missing << " bytes are missing";
}

TEST(Load, ASecondLoadReplacesTheFirst) {
    MemoryStream good(Form("ILBM", {TAG})), bad(Truncated(Form("ILBM", {TAG, TAG}), 1));
    IffFile file;
    EXPECT_FALSE(file.Load(&bad.stream));
    EXPECT_TRUE(file.Load(&good.stream));
    EXPECT_EQ(ChildrenOf(dynamic_cast<IffContainer&>(*file.GetRoot())), "GRAB");
    EXPECT_EQ(good.stream.m_nRefs, 1);
}

TEST(Load, NullIds) {
    const Bytes nullThen = ByteBuilder().U32(0);
    // A null id where a child begins is followed by the id that counts.
    const LoadedIff form(Form("ILBM", {nullThen, TAG}));
    EXPECT_EQ(ChildrenOf(form.Root()), "[GRAB]");
    const LoadedIff list(List("ILBM", {nullThen, Asker(), Form("ILBM", {Asker()})}));
    EXPECT_EQ(ChildrenOf(list.Root()), "BODYFORM") << "a picture chunk slips into a LIST";
    const LoadedIff twice(List("ILBM", {ByteBuilder().U32(0).U32(0).U32(2).U16(7)}));
    EXPECT_TRUE(twice.bLoaded);
    EXPECT_TRUE(ChildAt(twice.Root(), 0).IsUnknown());
}

TEST(Load, ContainersInsideContainersHaveALimit) {
    for (const char* id : {"LIST", "FORM"}) {
        EXPECT_TRUE(Loads(Nested(DEEPEST_CONTAINER, id))) << id;
        EXPECT_FALSE(Loads(Nested(DEEPEST_CONTAINER + 1, id))) << id;
        EXPECT_FALSE(Loads(Nested(1'000'000, id))) << id;
    }
    const LoadedIff deep(Nested(DEEPEST_CONTAINER, "LIST"));
    EXPECT_TRUE(deep.Root().ForEach(
        ID_NULL, ID_NULL, [](IffChunk*, void*) { return false; }, nullptr));
}

std::string Visited(Bytes bytes, IffId type, IffId id, u64 stopAfter = 100) {
    const LoadedIff file(std::move(bytes));
    struct Visit {
        std::string text;
        u64 left;
    } visit{"", stopAfter};
    const bool whole = file.Root().ForEach(
        type, id,
        [](IffChunk* chunk, void* context) {
            auto* const to = static_cast<Visit*>(context);
            to->text += std::to_string(ValueOf(chunk));
            return --to->left > 0;
        },
        &visit);
    return visit.text + (whole ? "" : "!");
}

TEST(ForEach, VisitsFormsOfTheTypeInFileOrder) {
    const IffId tag("GRAB");
    const Bytes cat = Cat("MIPM", {Form("ILBM", {TagOf(1), Bmhd({}), TagOf(2)}), Form("MIPM", {TagOf(8)}),
                                   List("ILBM", {Prop("ILBM", {TagOf(3)}), Form("ILBM", {TagOf(4)})})});
    EXPECT_EQ(Visited(cat, ID_ILBM, tag), "1234");
    EXPECT_EQ(Visited(cat, ID_ILBM, tag, 3), "123!");
    EXPECT_EQ(Visited(cat, ID_ILBM, ID_NULL), "10234") << "the null id matches the header too";
    EXPECT_EQ(Visited(cat, IffId("MIPM"), tag), "");
    EXPECT_EQ(Visited(List("ILBM", {ByteBuilder().U32(0), TagOf(5), Form("ILBM", {TagOf(6)})}), ID_ILBM, tag),
              "6");
}

TEST(FindProperty, NearestBeforeTheAskerThenOutThroughLists) {
    const auto form = [](std::vector<Bytes> chunks) { return Form("ILBM", chunks); };
    const auto prop = [](u8 value) { return Prop("ILBM", {TagOf(value)}); };
    struct Case {
        const char* name;
        Bytes file;
        u32 found;
    };
    for (const Case& c : {
             Case{"own, nearest", form({TagOf(1), TagOf(2), Asker(), TagOf(3)}), 2},
             Case{"none before it", form({Asker(), TagOf(3)}), 0},
             Case{"PROP", List("ILBM", {prop(1), form({Asker(), TagOf(9)})}), 1},
             Case{"own before PROP", List("ILBM", {prop(1), form({TagOf(2), Asker()})}), 2},
             Case{"last in a PROP", List("ILBM", {Prop("ILBM", {TagOf(1), TagOf(2)}), form({Asker()})}), 2},
             Case{"nearer PROP", List("ILBM", {prop(1), prop(2), form({Asker()})}), 2},
             Case{"nearer PROP without it", List("ILBM", {prop(1), Prop("ILBM", {}), form({Asker()})}), 1},
             Case{"PROP behind", List("ILBM", {form({Asker()}), prop(1)}), 0},
             Case{"PROP of another type", List("ILBM", {Prop("MIPM", {}), form({Asker()})}), 0},
             Case{"two LISTs out", List("X   ", {prop(1), List("Y   ", {form({Asker()})})}), 1},
             Case{"inner LIST first", List("X   ", {prop(1), List("Y   ", {prop(2), form({Asker()})})}), 2},
             Case{"a CAT ends it", List("ILBM", {prop(1), Cat("ILBM", {form({Asker()})})}), 0},
             Case{"a FORM ends it", List("ILBM", {prop(1), form({form({Asker()})})}), 0},
         }) {
        const LoadedIff file(c.file);
        ASSERT_TRUE(file.bLoaded) << c.name;
        // Down to the innermost form, whose body asks.
        const IffContainer* form_ = &file.Root();
        const IffChunkNode* body = nullptr;
        while (!(body = form_->FindFirst(IffId("BODY")))) {
            const IffChunkNode* node = form_->m_pLast;
            while (node->m_pChunk->m_Id == ID_PROP) node = node->m_pPrev;
            form_ = &dynamic_cast<IffContainer&>(*node->m_pChunk);
        }
        EXPECT_EQ(ValueOf(body->m_pChunk->FindProperty(IffId("GRAB"))), c.found) << c.name;
    }
    GrabChunk alone;
    EXPECT_EQ(alone.FindProperty(ID_NULL), nullptr);
}

TEST(Container, ChildrenComeAndGo) {
    const LoadedIff file(Form("ILBM", {TagOf(1), Chunk("JUNK", {}), TagOf(2), TagOf(3)}));
    IffContainer& root = file.Root();
    const IffId tag("GRAB");
    EXPECT_EQ(ValueOf(root.FindNext(root.FindFirst(tag), tag)->m_pChunk.Get()), 2u)
        << "unknown ones are passed over";
    EXPECT_EQ(ValueOf(root.FindPrev(root.FindLast(tag), tag)->m_pChunk.Get()), 2u);
    const auto kept = CountedPtr<IffChunk>::Share(&ChildAt(root, 2));
    root.RemoveChild(kept->m_pNode);
    EXPECT_EQ(kept->m_nRefs, 1);
    EXPECT_EQ(kept->m_pParent, nullptr);
    EXPECT_EQ(kept->m_pNode, nullptr);
    root.RemoveChild(root.m_pLast);
    root.RemoveChild(root.m_pFirst);
    EXPECT_EQ(ChildrenOf(root), "[JUNK]");
    root.AddChild(kept.Get());
    EXPECT_EQ(ChildrenOf(root), "[JUNK]GRAB");
}

TEST(Registry, TheLatestRegistrationThatMatchesWins) {
    struct Other final : public IffChunk {
        Other() : IffChunk(IffId("TEST")) {}
        void Transfer(IffArchive&) override {}
    };
    const auto create = [](IffId type, IffId id) {
        return CountedPtr<IffChunk>::Adopt(IffChunkRegistry::Create(type, id));
    };
    const IffId type("TYPE"), id("TEST");
    IffChunkRegistry::Register(type, id, []() -> IffChunk* { return new GrabChunk; });
    EXPECT_TRUE(dynamic_cast<GrabChunk*>(create(type, id).Get()));
    IffChunkRegistry::Register(type, id, []() -> IffChunk* { return new Other; });
    EXPECT_TRUE(dynamic_cast<Other*>(create(type, id).Get()));
    EXPECT_TRUE(dynamic_cast<Other*>(create(ID_NULL, id).Get())) << "a null type in the question matches";
    EXPECT_TRUE(create(ID_ILBM, id)->IsUnknown());
    EXPECT_TRUE(dynamic_cast<IffForm*>(create(ID_ILBM, ID_FORM).Get())) << "a null type in the entry matches";
    EXPECT_TRUE(create(ID_ILBM, ID_NULL)->IsUnknown());
}

TEST(ReadOnlyCheck, EndsAProgramOfAnotherMind) {
    CheckIffReadOnly();
    EXPECT_EXIT(CheckIffReadOnlySetting(!g_bIffReadOnly), testing::ExitedWithCode(256 - 45),
                "Error: IFF_READ_ONLY definition not consistent");
}

}  // namespace
