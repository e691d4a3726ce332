#include <OrrinEngine.h>

/** Uses the interface the way another library does, and none of the runtime's entries. */
extern "C" __attribute__((visibility("default"))) int orrinReaderUsesModels()
{
    orrin::Engine engine({}, {}, {});
    return engine.hasModel() ? 1 : 0;
}
