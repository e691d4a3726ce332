#include <OrrinEngine.h>

/** Uses the interface the way another library does, and none of the runtime's entries. */
extern "C" __attribute__((visibility("default"))) int orrinReaderUsesModels(const char *modelFolder)
{
    orrin::Engine engine({orrin::ModelSource::inFolder(modelFolder)}, {}, {});
    return engine.hasModel() ? 1 : 0;
}
