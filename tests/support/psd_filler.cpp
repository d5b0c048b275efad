#include "support/psd_filler.h"

#include "support/loading.h"

#include <cstdlib>
#include <cstring>

namespace {

std::unique_ptr<char[]> Copy(const std::string& text) {
    auto copy = std::make_unique<char[]>(text.size() + 1);
    std::memcpy(copy.get(), text.data(), text.size());
    return copy;
}

// Takes an object over into a list and goes on with it.
template <typename Object>
Object& Append(PsdList<Object>& list, PsdPtr<Object> object) {
    Object& kept = *object;
    if (!list.Append(std::move(object))) std::abort();
    return kept;
}

}  // namespace

void AddAlphaNames(PsdImage& psd, const std::vector<std::string>& names) {
    ByteBuilder payload;
    for (const std::string& name : names) payload.U8(static_cast<u32>(name.size())).Text(name);
    const u32 size = static_cast<u32>(payload.Get().size());
    MemoryStream source(payload);
    auto data = MakePsdObject<PsdAlphaNamesData>();
    if (!data->Read(source.stream, size)) std::abort();
    PsdResource& resource = Append(psd.m_Resources, MakePsdObject<PsdResource>());
    resource.m_nId = PSD_RESOURCE_ALPHA_NAMES;
    resource.m_pData = std::move(data);
}

PsdLayer& AddLayer(PsdImage& psd, const std::string& name) {
    PsdLayer& layer = Append(psd.m_Layers, MakePsdObject<PsdLayer>());
    layer.m_pszName = Copy(name);
    return layer;
}

PsdLayerChannel& AddChannel(PsdLayer& layer, i32 nId) {
    PsdLayerChannel& channel = Append(layer.m_Channels, MakePsdObject<PsdLayerChannel>());
    channel.m_nId = nId;
    return channel;
}
