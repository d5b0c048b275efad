#include "app/resources/resources.h"

#include "app/resource_ids.h"

namespace {

constexpr StringResource STRINGS[] = {
    {IDR_MAINFRAME, "Talvorine Graphics File Viewer"},
    {IDR_ALL_TYPES,
     "\n\n\nAll Recognized File Types (*.TMG, *.TFF, *.IFF, *.PSD)\n.TMG;*.TFF;*.IFF;*.PSD\n\n"},
    {IDR_IFF_TYPE,
     "\n\n\nInterchange Graphics Files (*.IFF)\n.IFF\nVistrel.StdGraphic\nInterchange Graphics File"},
    {IDR_TFF_TYPE, "\n\n\nTalvorine Graphics Files (*.TFF)\n.TFF\nVistrel.Graphic\nTalvorine Graphics File"},
    {IDR_TMG_TYPE, "\n\n\nTalvorine Graphics Files (*.TMG)\n.TMG\nVistrel.Graphic2\nTalvorine Graphics File"},
    {IDR_PSD_TYPE, "\n\n\nPhotoshop Files (*.PSD)\n.PSD\n\n"},
    {AFX_IDS_APP_TITLE, "Talvorine Graphics File Viewer"},
    {AFX_IDS_USAGE,
     "usage: vistrel [FILE...]\n"
     "Shows still pictures, each in a window of its own.\n"
     "\n"
     "  --          every word behind it names a file\n"
     "  --help      prints this and ends\n"
     "  --version   prints the program's version and ends"},
    {AFX_IDS_VERSION, "Talvorine Graphics File Viewer 1.12"},
};

constexpr ControlResource LAYER_BAR_CONTROLS[] = {
    {ControlKind::Static, 0, {3, 6, 22, 14}, "&Layer:"},
    {ControlKind::ComboBox, IDC_LAYER, {23, 3, 78, 69}, ""},
    {ControlKind::Static, 0, {80, 6, 108, 14}, "&Channel:"},
    {ControlKind::ComboBox, IDC_CHANNEL, {109, 3, 177, 69}, ""},
};

constexpr DialogResource DIALOGS[] = {
    {IDD_LAYER_BAR, {180, 19}, LAYER_BAR_CONTROLS},
};

}  // namespace

constexpr ResourceTables g_resources = {STRINGS, DIALOGS};
