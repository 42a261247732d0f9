#include "platform/qt/qt_module.h"

#include "platform/qt/qt_window_system.h"

extern "C" CWindowSystem* tvo_make_window_system(int* argc, char** argv, const TvoQtOptions* options) {
    return new CQtWindowSystem(argc, argv, options ? *options : TvoQtOptions());
}
