#include "app/vistrel_app.h"

namespace {

CVistrelApp theApp;

}  // namespace

int main(int argc, char** argv) {
    return AfxWinMain(theApp, argc, argv);
}
