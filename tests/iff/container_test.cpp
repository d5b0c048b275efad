#include "iff/container.h"

#include "chunks/ilbm_chunks.h"
#include "framework/core/exception.h"
#include "iff/read_only_check.h"
#include "iff/registry.h"
#include "support/iff_builder.h"
#include "support/loading.h"
#include "support/random.h"
#include "support/table.h"

#include <gtest/gtest.h>

namespace {

constexpr IffId TAG_ID("GRAB"), ASKER_ID("BODY");

Bytes Tag(u8 value) { return Chunk("GRAB", {0, value, 0, 0}); }
const Bytes ASKER = Chunk("BODY", {1, 2});
const Bytes NULL_ID(4, 0);

u32 ValueOf(const IffChunk* chunk) {
    const auto* const grab = dynamic_cast<const GrabChunk*>(chunk);
    return grab ? grab->m_nX : 0;
}

// Ids of the children in file order, unknown ones in brackets.
std::string ChildrenOf(const IffContainer& container) {
    std::string text;
    for (const IffChunkNode* node = container.m_pFirst; node; node = node->m_pNext) {
        EXPECT_EQ(node->m_pChunk->m_pParent, &container);
        EXPECT_EQ(node->m_pChunk->m_pNode, node);
        const std::string id(reinterpret_cast<const char*>(&node->m_pChunk->m_Id.m_nValue), 4);
        text += node->m_pChunk->IsUnknown() ? "[" + id + "]" : id;
    }
    return text;
}

TEST(Load, WhatIsAllowedWhere) {
    const std::vector<Bytes> children = {
        Form("MIPM", {Bmhd({})}), List("ILBM", {}), Cat("ILBM", {}), Prop("ILBM", {}), Bmhd({})};
    for (const auto& [id, expected] : Table<const char*, const char*>{
             {"FORM", "FORMLISTCAT [PROP]BMHD"},
             {"LIST", "FORMLISTCAT PROP[BMHD]"},
             {"CAT ", "FORMLISTCAT [PROP][BMHD]"},
             {"PROP", "[FORM][LIST][CAT ][PROP]BMHD"},
         }) {
        const LoadedIff file(List("ILBM", {Container(id, "ILBM", children)}));
        EXPECT_EQ(ChildrenOf(ChildAs<IffContainer>(file.Root(), 0)), expected);
    }
    const LoadedIff level(children[0]);
    EXPECT_EQ(ChildrenOf(level.Root()), "[BMHD]") << "picture chunks are known in their own forms only";
}

TEST(Load, RefusalsBesideTheirControls) {
    const Bytes odd = Form("ILBM", {Bmhd({}), Chunk("BODY", {1, 2, 3, 4, 5})});
    ASSERT_EQ(odd.size(), 54u);
    const auto child = [](std::string_view id, u32 size, u32 declared) {
        return Form("ILBM", {Chunk(id, Bytes(size), declared)}, std::max(declared, size) + 12);
    };
    const auto outermost = [](std::string_view id) { return Container(id, "ILBM", {Bmhd({})}); };
    const Bytes wrapping = Chunk("GRAB", Bytes(4), 0x7FFFFFFE);
    for (const auto& [name, file, loads] : Table<const char*, Bytes, bool>{
             {"whole", odd, true},
             {"bytes behind the end", ByteBuilder().Append(odd).U32(1), true},
             {"no room for the pad byte", Form("ILBM", {Bmhd({}), Chunk("BODY", Bytes(5))}, 45), false},
             {"a child as large as its parent allows", Form("ILBM", {Chunk("CRNG", Bytes(6), 6)}), true},
             {"a child that is larger", Form("ILBM", {Chunk("CRNG", Bytes(6), 8)}), false},
             {"a child of 2 GiB", Form("ILBM", {Chunk("CRNG", Bytes(6), 0x80000000)}), false},
             {"a child of nearly 4 GiB", Form("ILBM", {Chunk("CRNG", Bytes(6), 0xFFFFFFFE)}), false},
             {"LIST", outermost("LIST"), true},
             {"CAT", outermost("CAT "), true},
             {"PROP", outermost("PROP"), false},
             {"another id", outermost("form"), false},
             {"four zero bytes before it", ByteBuilder().U32(0).Append(odd), false},
             {"no type", Chunk("FORM", {}), false},
             {"BMHD of 19 bytes", child("BMHD", 19, 19), false},
             {"BMHD of 24 bytes", child("BMHD", 24, 24), true},
             {"GRAB of 3 bytes", child("GRAB", 3, 3), false},
             {"the file ends behind what its class reads", child("GRAB", 4, 1000), true},
             {"the file ends before it", child("BODY", 4, 1000), false},
             {"an overrun that wraps", Form("ILBM", {wrapping, wrapping}, 0x7FFFFFFE), false},
         })
        EXPECT_EQ(Loads(file), loads) << name;
}

TEST(Load, EveryTruncationIsRefused) {
    const Bytes file = List("ILBM", {Prop("ILBM", {Bmhd({}), Cmap({RED, GREEN})}),
                                        Form("ILBM", {Chunk("CRNG", Bytes(5)), ASKER, Chunk("BODY", {1})})});
    ASSERT_TRUE(Loads(file));
    for (u64 missing = 1; missing <= file.size(); ++missing)
        EXPECT_FALSE(Loads(Truncated(file, missing))) << missing << " bytes are missing";
}

TEST(Load, EachReplacesTheOneBefore) {
    MemoryStream cut(Truncated(Form("ILBM", {Tag(1), Tag(2)}), 1)), good(Form("ILBM", {Tag(1)})), text({'F', 'O'});
    IffFile file;
    EXPECT_FALSE(file.Load(&cut.stream));
    EXPECT_TRUE(file.Load(&good.stream));
    EXPECT_EQ(ChildrenOf(dynamic_cast<IffContainer&>(*file.GetRoot())), "GRAB");
    EXPECT_EQ(good.stream.m_nRefs, 1);
    EXPECT_FALSE(file.Load(&text.stream));
    EXPECT_FALSE(file.GetRoot());
}

// Whatever the archive throws while it is positioned, and whenever, ends the load and nothing else.
TEST(Load, ExceptionsOfTheSourcePassThrough) {
    const Bytes bytes = Form("ILBM", {Cmap({RED}), List("ILBM", {Chunk("CRNG", Bytes(2000))}), ASKER});
    for (u64 flushes = 0;; ++flushes) {
        MemoryStream source(bytes);
        source.archive.m_nThrowAtFlush = flushes;
        IffFile file;
        bool thrown = false;
        try {
            EXPECT_TRUE(file.Load(&source.stream));
            EXPECT_LE(source.archive.m_nFlushes, flushes) << "none is kept back";
        } catch (const CFileException&) {
            thrown = true;
        }
        EXPECT_EQ(source.stream.m_nRefs, 1) << flushes;
        source.archive.m_nThrowAtFlush = MemoryFile::NEVER;
        if (!thrown) break;
        ASSERT_LT(flushes, 100u);
    }
}

TEST(Load, ANullIdIsFollowedByTheIdThatCounts) {
    EXPECT_EQ(ChildrenOf(LoadedIff(Form("ILBM", {NULL_ID, Tag(1)})).Root()), "[GRAB]");
    const LoadedIff list(List("ILBM", {NULL_ID, ASKER, Form("ILBM", {ASKER})}));
    EXPECT_EQ(ChildrenOf(list.Root()), "BODYFORM") << "a picture chunk slips into a LIST";
    const LoadedIff twice(List("ILBM", {ByteBuilder().U32(0, 0, 2).U16(7)}));
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

// The values of the tags visited; those of other chunks are 0, and "!" says that the callback ended it.
std::string Visited(const Bytes& bytes, IffId type, IffId id, u64 stopAt = 100) {
    const LoadedIff file(bytes);
    std::pair<std::string, u64> visit = {"", stopAt};
    const auto callback = [](IffChunk* chunk, void* context) {
        auto& [text, stop] = *static_cast<decltype(visit)*>(context);
        text += std::to_string(ValueOf(chunk));
        return text.size() < stop;
    };
    return file.Root().ForEach(type, id, callback, &visit) ? visit.first : visit.first + "!";
}

TEST(ForEach, VisitsFormsOfTheTypeInFileOrder) {
    const Bytes cat = Cat("MIPM",
        {Form("ILBM", {Tag(1), Bmhd({}), Tag(2)}), Form("MIPM", {Tag(8)}), List("MIPM", {Form("ILBM", {Tag(9)})}),
            List("ILBM", {Prop("ILBM", {Tag(3)}), Form("ILBM", {Tag(4)})})});
    EXPECT_EQ(Visited(cat, ID_ILBM, TAG_ID), "1234");
    EXPECT_EQ(Visited(cat, ID_ILBM, TAG_ID, 3), "123!");
    EXPECT_EQ(Visited(cat, ID_ILBM, ID_NULL), "10234") << "the null id matches the header too";
    EXPECT_EQ(Visited(cat, IffId("MIPM"), TAG_ID), "");
    EXPECT_EQ(Visited(List("ILBM", {NULL_ID, Tag(5), Form("ILBM", {Tag(6)})}), ID_ILBM, TAG_ID), "6");
}

TEST(FindProperty, NearestBeforeTheAskerThenOutThroughLists) {
    const auto form = [](std::vector<Bytes> chunks) { return Form("ILBM", chunks); };
    const auto prop = [](u8 value) { return Prop("ILBM", {Tag(value)}); };
    for (const auto& [name, bytes, found] : Table<const char*, Bytes, u32>{
             {"own, nearest", form({Tag(1), Tag(2), ASKER, Tag(3)}), 2},
             {"none before it", form({ASKER, Tag(3)}), 0},
             {"own before PROP", List("ILBM", {prop(1), form({Tag(2), ASKER})}), 2},
             {"last in a PROP", List("ILBM", {Prop("ILBM", {Tag(1), Tag(2)}), form({ASKER, Tag(9)})}), 2},
             {"nearer PROP", List("ILBM", {prop(1), prop(2), form({ASKER})}), 2},
             {"nearer PROP without it", List("ILBM", {prop(1), Prop("ILBM", {}), form({ASKER})}), 1},
             {"PROP behind", List("ILBM", {form({ASKER}), prop(1)}), 0},
             {"PROP of another type", List("ILBM", {Prop("MIPM", {}), form({ASKER})}), 0},
             {"two LISTs out", List("X   ", {prop(1), List("Y   ", {form({ASKER})})}), 1},
             {"inner LIST first", List("X   ", {prop(1), List("Y   ", {prop(2), form({ASKER})})}), 2},
             {"a CAT ends it", List("ILBM", {prop(1), Cat("ILBM", {form({ASKER})})}), 0},
             {"a FORM ends it", List("ILBM", {prop(1), form({form({ASKER})})}), 0},
         }) {
        const LoadedIff file(bytes);
        // Down to the innermost form, whose body asks.
        const IffContainer* at = &file.Root();
        while (!at->FindFirst(ASKER_ID)) {
            const IffChunkNode* node = at->m_pLast;
            while (node->m_pChunk->m_Id == ID_PROP) node = node->m_pPrev;
            at = &dynamic_cast<IffContainer&>(*node->m_pChunk);
        }
        EXPECT_EQ(ValueOf(at->FindFirst(ASKER_ID)->m_pChunk->FindProperty(TAG_ID)), found) << name;
    }
    EXPECT_EQ(GrabChunk().FindProperty(ID_NULL), nullptr);
}

// The lookup as a plain walk: the judge of index and memory.
IffChunk* PlainFind(const IffChunk& asker, IffId id) {
    const auto last = [id](const IffChunkNode* node) {
        while (node && (node->m_pChunk->IsUnknown() || !node->m_pChunk->m_Id.Matches(id))) node = node->m_pPrev;
        return node ? node->m_pChunk.Get() : nullptr;
    };
    const IffContainer* at = asker.m_pParent;
    IffChunk* found = last(asker.m_pNode->m_pPrev);
    for (const IffId type = at->m_Type; !found && at->m_pParent && at->m_pParent->m_Id == ID_LIST; at = at->m_pParent)
        for (const IffChunkNode* node = at->m_pNode->m_pPrev; node && !found; node = node->m_pPrev)
            if (const auto* const prop = dynamic_cast<const IffProp*>(node->m_pChunk.Get()))
                if (prop->m_Type.Matches(type)) found = last(prop->m_pLast);
    return found;
}

Bytes RandomPart(Random& random, u32 depth) {
    static const std::string_view TYPES[] = {"ILBM", "MIPM", {"\0\0\0\0", 4}};
    static const Bytes LEAVES[] = {ASKER, Tag(1), Bmhd({}), Chunk("CMAP", {}), Chunk("JUNK", {}), Chunk("GRBA", {})};
    const u32 shape = depth == 0 ? 2 : random.Below(8);
    std::vector<Bytes> children;
    for (u32 i = random.Below(random.Below(2) ? 5 : 25); i > 0; --i) {
        const bool leaf = shape <= 2 || random.Below(6) == 0;
        children.push_back(leaf ? LEAVES[random.Below(6)] : RandomPart(random, depth - 1));
    }
    const char* const ids[] = {"PROP", "PROP", "FORM", "FORM", "CAT ", "LIST", "LIST", "LIST"};
    return Container(ids[shape], TYPES[random.Below(3)], children);
}

u32 CompareAll(const IffContainer& part) {
    u32 found = 0;
    for (const IffChunkNode* node = part.m_pFirst; node; node = node->m_pNext) {
        const IffChunk& chunk = *node->m_pChunk;
        for (const IffId id : {TAG_ID, TAG_ID, BmhdChunk::ID, CmapChunk::ID, ASKER_ID, IffId("GRBA"), ID_NULL}) {
            IffChunk* const expected = PlainFind(chunk, id);
            EXPECT_EQ(chunk.FindProperty(id), expected);
            found += expected != nullptr;
        }
        if (const auto* const inner = dynamic_cast<const IffContainer*>(&chunk)) found += CompareAll(*inner);
    }
    return found;
}

TEST(FindProperty, EqualsThePlainWalkInRandomTrees) {
    Random random(7);
    u32 found = 0;
    for (int round = 0; round < 40 && !testing::Test::HasFailure(); ++round) {
        std::vector<Bytes> parts;
        while (parts.size() < 12) parts.push_back(RandomPart(random, 3));
        const LoadedIff file(List("ILBM", parts));
        ASSERT_TRUE(file.bLoaded);
        found += CompareAll(file.Root());
        file.Root().RemoveChild(file.Root().m_pFirst);  // what was remembered is no longer true
        CompareAll(file.Root());
    }
    EXPECT_GT(found, 10'000u);
}

TEST(Container, ChildrenComeAndGo) {
    const LoadedIff file(Form("ILBM", {Tag(1), Chunk("JUNK", {}), Tag(2), Tag(3)}));
    IffContainer& root = file.Root();
    EXPECT_EQ(ValueOf(root.FindNext(root.FindFirst(TAG_ID), TAG_ID)->m_pChunk.Get()), 2u)
        << "unknown ones do not count";
    const auto kept = CountedPtr<IffChunk>::Share(&ChildAt(root, 2));
    root.RemoveChild(kept->m_pNode);
    EXPECT_EQ(kept->m_nRefs, 1);
    EXPECT_FALSE(kept->m_pParent || kept->m_pNode);
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
