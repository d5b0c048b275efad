#include "iff/container.h"
#include "iff/registry.h"
#include "iff/stream_archive.h"
#include "tools/describe/refusal.h"

namespace {

std::string Name(IffId id) {
    std::string text(reinterpret_cast<const char*>(&id.m_nValue), 4);
    for (char& c : text)
        if (c < 0x20 || c > 0x7E) c = '?';
    return "\"" + text + "\"";
}

// The middle of a path through thousands of containers says nothing.
std::string Shortened(const std::string& path) {
    constexpr size_t KEPT = 60;
    return path.size() <= 3 * KEPT ? path : path.substr(0, KEPT) + "..." + path.substr(path.size() - KEPT);
}

constexpr const char* CONTAINER_ENDS = "its container ends";

// What ends where an archive does: the outermost chunk stands in the file itself.
const char* EndOf(const IffArchive& archive) {
    return archive.GetDepth() == 0 ? "the file ends" : CONTAINER_ENDS;
}

class IffWalk {
  public:
    explicit IffWalk(ByteStream& stream) : m_stream(stream) {}

    Refusal Walk() {
        const auto archive = CountedPtr<IffStreamArchive>::Adopt(new IffStreamArchive);
        archive->Attach(&m_stream);
        if (archive->GetRemaining() < 0) {
            Stop("the file", "its 2 GiB and more are too many");
            return m_refusal;
        }
        IffId id;
        archive->Transfer(id);
        const bool outermost = id == ID_FORM || id == ID_LIST || id == ID_CAT;
        if (archive->HasFailed())
            Stop("the outermost id", "the file ends");
        else if (!outermost)
            Stop("the outermost id", Name(id) + "; FORM, LIST or CAT is read");
        else
            ReadBody(*archive, ID_NULL, id, true);
        return m_refusal;
    }

  private:
    void Stop(const std::string& reading, const std::string& rule) {
        m_bStopped = true;
        m_refusal = {m_stream.GetPosition(), reading + Shortened(m_strPath),
                     m_stream.IsGood() ? rule : DescribeBadState(m_stream)};
    }

    // One chunk whose id is known. Calls itself once for each level, so texts are made elsewhere: they would
    // take room on the stack at every level.
    void ReadBody(IffArchive& archive, IffId formType, IffId id, bool useRegistry) {
        u32 size = 0;
        archive.Transfer(size);
        if (archive.HasFailed()) return StopAtSize(archive, id);
        const size_t outer = m_strPath.size();
        Enter(id);
        const auto chunk = CountedPtr<IffChunk>::Adopt(useRegistry ? IffChunkRegistry::Create(formType, id)
                                                                   : new IffUnknownChunk(id));
        IffArchive* const body = archive.OpenChunk(size);
        if (body->HasFailed())
            StopAtHugeSize(size);
        else if (auto* const container = dynamic_cast<IffContainer*>(chunk.Get()))
            ReadChildren(*body, *container);
        else
            ReadFields(*body, *chunk, size);
        archive.CloseChunk(body);
        if (!m_bStopped && size % 2 != 0) ReadPad(archive);
        m_strPath.resize(outer);
    }

    void ReadChildren(IffArchive& body, IffContainer& container) {
        body.Transfer(container.m_Type);
        if (body.HasFailed()) return StopAtType();
        if (body.GetDepth() > DEEPEST_CONTAINER) return StopAtDepth(body.GetDepth());
        while (!m_bStopped && body.GetRemaining() > 0) {
            IffId id;
            body.Transfer(id);
            const bool allowed = container.IsChildAllowed(id);
            if (id.IsNull() && !body.HasFailed()) body.Transfer(id);
            if (body.HasFailed()) return StopAtId();
            ReadBody(body, container.m_Type, id, allowed);
        }
        if (!m_bStopped && body.GetRemaining() < 0) StopAtOverrun();
    }

    void ReadFields(IffArchive& body, IffChunk& chunk, u32 size) {
        chunk.Transfer(body);
        if (!body.HasFailed()) return;
        const bool fileEnds =
            body.GetRemaining() > 0 && m_stream.GetRemaining() < static_cast<u32>(body.GetRemaining());
        Stop("the body", fileEnds ? "the file ends" : std::to_string(size) + " bytes are too few for it");
    }

    void ReadPad(IffArchive& archive) {
        u8 pad = 0;
        archive.Transfer(pad);
        if (archive.HasFailed()) Stop("the pad byte", EndOf(archive));
    }

    void Enter(IffId id) { m_strPath += (m_strPath.empty() ? " in " : "/") + Name(id); }

    void StopAtId() { Stop("the id of a chunk", CONTAINER_ENDS); }
    void StopAtSize(const IffArchive& archive, IffId id) { Stop("the size of " + Name(id), EndOf(archive)); }
    void StopAtType() { Stop("the type", CONTAINER_ENDS); }
    void StopAtOverrun() { Stop("the last chunk", "it is larger than its container"); }
    void StopAtHugeSize(u32 size) {
        Stop("the size", std::to_string(size) + " bytes; less than 2147483648 are read");
    }
    void StopAtDepth(u32 depth) {
        m_strPath.clear();  // says no more than the number does
        Stop("a container", "it is the " + std::to_string(depth) + "th one inside another; " +
                                std::to_string(DEEPEST_CONTAINER) + " are read");
    }

    ByteStream& m_stream;
    Refusal m_refusal = {0, "nothing", ""};
    bool m_bStopped = false;
    std::string m_strPath;  // of chunks, the outermost first
};

}  // namespace

Refusal WhyNotIff(ByteStream& stream) {
    return IffWalk(stream).Walk();
}
