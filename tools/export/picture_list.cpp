#include "tools/export/picture_list.h"

#include "display/catalogue.h"
#include "tools/export/picture_names.h"

std::vector<ListedPicture> ListPictures(const CVistrelDoc& document, const std::string& strName,
                                        PictureNames& names) {
    std::vector<ListedPicture> list;
    DisplayImage image;
    const std::vector<std::string> layers = LayerNames(document);
    for (u32 layer = 0; layer < layers.size(); ++layer) {
        const std::vector<std::string> channels = image.ChooseLayer(document, layer);
        for (u32 channel = 0; channel < channels.size(); ++channel)
            list.push_back({{layer, channel},
                            layers[layer],
                            channels[channel],
                            names.Next(strName, layers[layer], channels[channel])});
    }
    return list;
}
