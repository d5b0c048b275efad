#include "iff/container.h"

#include "chunks/ilbm_chunks.h"
#include "framework/core/exception.h"
#include "iff/read_only_check.h"
#include "iff/registry.h"
#include "iff/stream_archive.h"
#include "support/iff_builder.h"
#include "support/loading.h"
#include "support/random.h"
#include "support/table.h"

#include <gtest/gtest.h>

constexpr IffId TAG_ID("GRAB");

static Bytes Tag(u8 nValue) { return Chunk("GRAB", {0, nValue, 0, 0}); }
const Bytes ASKER = Body({1, 2});
const Bytes NULL_ID(4, 0);

static u32 ValueOf(const IffChunk* pChunk) {
    const auto* const grab = dynamic_cast<const GrabChunk*>(pChunk);
    return grab ? grab->m_nX : 0;
}

// Ids of the children in file order, unknown ones in brackets.
static std::string ChildrenOf(const IffContainer& container) {
    std::string text;
    for (const IffChunkNode* node = container.m_pFirst; node; node = node->m_pNext) {
        EXPECT_TRUE(node->m_pChunk->m_pParent == &container && node->m_pChunk->m_pNode == node);
        const std::string id(reinterpret_cast<const char*>(&node->m_pChunk->m_Id.m_nValue), 4);
        text += node->m_pChunk->IsUnknown() ? "[" + id + "]" : id;
    }
    return text;
}

TEST(IffId, HoldsTheBytesOfAnyCharacters) { EXPECT_EQ(IffId("\x81\xFF\0\x7F").m_nValue, 0x7F00FF81u); }

// An archive of its own over bytes in memory.
struct RootArchive {
    explicit RootArchive(Bytes bytes) : source(std::move(bytes)) { root->Attach(&source.stream); }

    MemoryStream source;
    Finding finding;
    PassedOver passedOver;
    const CountedPtr<IffArchive> root = CountedPtr<IffArchive>::Adopt(new IffStreamArchive(finding, passedOver));
};

TEST(IffArchive, AChildLargerThanItsParentFailsTheNextTransfer) {
    const RootArchive archive(Bytes(20));
    const auto& root = archive.root;
    root->CloseChunk(root->OpenChunk(21));
    EXPECT_FALSE(root->HasFailed());
    u8 value = 0;
    root->Transfer(value);
    EXPECT_TRUE(root->HasFailed());
    for (int i = 0; i < 3; ++i) {
        root->CloseChunk(root->OpenChunk(0x80000000));
        EXPECT_LT(root->GetRemaining(), 0) << "the count does not wrap back into the chunk";
    }
}

TEST(IffArchive, IntegersAreBigEndianAndKeepTheirSign) {
    const RootArchive archive(Bytes{0x80, 1, 2, 3, 4, 5, 6, 7, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFE, 0xFF,
        0xFE, 0xFF, 0xFF, 0xFF, 0xFE, 0xFE});
    const auto& root = archive.root;
    const auto next = [&](auto value) {
        root->Transfer(value);
        return value;
    };
    EXPECT_EQ(next(u64{}), 0x8001020304050607u);
    EXPECT_EQ(next(i64{}), -2);
    EXPECT_EQ(next(i16{}), -2);
    EXPECT_EQ(next(i32{}), -2);
    EXPECT_EQ(next(i8{}), -2);
    EXPECT_FALSE(root->HasFailed());
    next(u8{});
    EXPECT_TRUE(root->HasFailed());
}

TEST(IffChunkRegistry, TheLatestOfOneKeyAnswers) {
    const IffId key("TEST");
    RegisterChunk<BmhdChunk>(key);
    IffChunkRegistry::Register(key, BmhdChunk::ID, []() -> IffChunk* { return new GrabChunk; });
    EXPECT_EQ(ChildrenOf(LoadedIff(Form("TEST", {Bmhd({})})).Root()), "GRAB");
}

TEST(Load, WhatIsAllowedWhere) {
    // The last has the null id before its own.
    const Parts children = {
        Form("MIPM", {}), List("ILBM", {}), Cat("ILBM", {}), Prop("ILBM", {}), Bmhd({}), NULL_ID, Tag(1)};
    for (const auto& [id, expected] : Table<const char*, const char*>{
             {"FORM", "FORMLISTCAT [PROP]BMHD[GRAB]"},
             {"LIST", "FORMLISTCAT PROP[BMHD]GRAB"},
             {"CAT ", "FORMLISTCAT [PROP][BMHD]GRAB"},
             {"PROP", "[FORM][LIST][CAT ][PROP]BMHD[GRAB]"},
         }) {
        const LoadedIff file(List("ILBM", {Container(id, "ILBM", children)}));
        EXPECT_EQ(ChildrenOf(ChildAs<IffContainer>(file.Root(), 0)), expected);
    }
}

TEST(Load, WhatDoesNotMatter) {
    const auto child = [](std::string_view id, u32 nSize, u32 nDeclared) {
        return Form("ILBM", {Chunk(id, Bytes(nSize), nDeclared)}, nDeclared + 12);
    };
    for (const auto& [name, file, loads] : Table<const char*, Bytes, bool>{
             {"LIST", List("ILBM", {}), true},
             {"CAT", Cat("ILBM", {}), true},
             {"another case", Container("form", "ILBM", {}), false},
             {"four zero bytes before it", ByteBuilder().U32(0).Append(child("BODY", 4, 4)), false},
             {"bytes after the end", ByteBuilder().Append(child("BODY", 4, 4)).U32(1), true},
             {"the file ends after what its class reads", child("GRAB", 4, 1000), true},
             {"the file ends before it", child("BODY", 4, 1000), false},
         })
        EXPECT_EQ(Loads(file), loads) << name;
}

TEST(Load, EveryTruncationIsRefused) {
    const Bytes file = List("ILBM",
        {Prop("ILBM", {Bmhd({}), Cmap({RED, GREEN})}), Form("ILBM", {Chunk("CRNG", Bytes(5)), ASKER, Body({1})})});
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
    for (const bool once : {false, true}) {
        bool thrown = true;
        for (u64 flushes = 0; thrown; ++flushes) {
            MemoryStream source(bytes);
            source.archive.m_flushes.fault = {flushes, once};
            thrown = false;
            try {
                EXPECT_TRUE(IffFile().Load(&source.stream));
                EXPECT_LE(source.archive.m_flushes.nCalls, flushes) << "none is kept back";
            } catch (const CFileException&) {
                thrown = true;
            }
            EXPECT_EQ(source.stream.m_nRefs, 1) << flushes;
            source.archive.m_flushes.fault = {};
            ASSERT_LT(flushes, 100u);
        }
    }
}

TEST(ForEach, VisitsFormsOfTheTypeInFileOrderUntilToldToEnd) {
    const LoadedIff cat(Cat("MIPM",
        {Form("ILBM", {Tag(1), Bmhd({}), Tag(2)}), Form("MIPM", {Tag(8)}), List("MIPM", {Form("ILBM", {Tag(9)})}),
            List("ILBM", {NULL_ID, Tag(7), Prop("ILBM", {Tag(3)}), Form("ILBM", {Tag(4), Tag(5)})})}));
    const auto callback = [](IffChunk* pChunk, void* pContext) {
        *static_cast<std::string*>(pContext) += std::to_string(ValueOf(pChunk));
        return ValueOf(pChunk) != 4;
    };
    for (const auto& [type, id, values] : Table<IffId, IffId, const char*>{
             {ID_ILBM, TAG_ID, "1234"}, {ID_ILBM, ID_NULL, "10234"}, {IffId("MIPM"), TAG_ID, ""}}) {
        std::string visited;
        const bool whole = cat.Root().ForEach(type, id, callback, &visited);
        EXPECT_EQ(visited, values);
        EXPECT_EQ(whole, visited.empty());
    }
}

// The lookup as a plain walk: the judge of index and memory.
static IffChunk* PlainFind(const IffChunk& asker, IffId id) {
    const auto last = [id](const IffChunkNode* pNode) {
        while (pNode && (pNode->m_pChunk->IsUnknown() || !pNode->m_pChunk->m_Id.Matches(id))) pNode = pNode->m_pPrev;
        return pNode ? pNode->m_pChunk.Get() : nullptr;
    };
    const IffContainer* at = asker.m_pParent;
    IffChunk* found = last(asker.m_pNode->m_pPrev);
    for (const IffId type = at->m_Type; !found && at->m_pParent && at->m_pParent->m_Id == ID_LIST; at = at->m_pParent)
        for (const IffChunkNode* node = at->m_pNode->m_pPrev; node && !found; node = node->m_pPrev)
            if (const auto* const prop = dynamic_cast<const IffProp*>(node->m_pChunk.Get()))
                if (prop->m_Type.Matches(type)) found = last(prop->m_pLast);
    return found;
}

static Bytes RandomPart(Random& random, u32 nDepth) {
    static const char* const IDS[] = {"BODY", "GRAB", "BMHD", "JUNK", "PROP", "PROP", "FORM", "FORM", "CAT ", "LIST"};
    static const std::string_view TYPES[] = {"ILBM", "MIPM", {"\0\0\0\0", 4}};
    const u32 kind = random.Below(nDepth == 0 ? 4 : 10);
    if (kind < 4) return Chunk(IDS[kind], Bytes(20));
    Parts children(random.Below(random.Below(2) ? 5 : 25));
    for (Bytes& child : children) child = RandomPart(random, nDepth - 1);
    return Container(IDS[kind], TYPES[random.Below(3)], children);
}

static u32 CompareAll(const IffContainer& part) {
    u32 found = 0;
    for (const IffChunkNode* node = part.m_pFirst; node; node = node->m_pNext) {
        const IffChunk& chunk = *node->m_pChunk;
        for (const IffId id : {TAG_ID, TAG_ID, BmhdChunk::ID, IffId("JUNK"), ID_NULL}) {
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
        const CountedPtr<IffChunk> removed = file.Root().m_pFirst->m_pChunk;
        file.Root().RemoveChild(file.Root().m_pFirst);  // what was remembered is no longer true
        CompareAll(file.Root());
        ASSERT_FALSE(removed->m_pParent || removed->m_pNode);
        EXPECT_EQ(removed->FindProperty(ID_NULL), nullptr);
    }
    EXPECT_GT(found, 10'000u);
}

TEST(ReadOnlyCheck, EndsAProgramOfAnotherMind) {
    CheckIffReadOnly();
    EXPECT_EXIT(CheckIffReadOnlySetting(!g_bIffReadOnly), testing::ExitedWithCode(256 - 45),
        "Error: IFF_READ_ONLY definition not consistent");
}
