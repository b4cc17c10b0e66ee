#include "cli/Commands.h"
#include "cli/Rounds.h"

namespace ztv {

// The frames are printed as they pass.
ExitStatus Trace(CommandRun &run) {
    Rounds rounds(run, run.WantedTags(run.AllTags()));
    return rounds.Run([&run](const PolledSensor &, const PolledSensor::Reading &) { run.ThrowIfUntraced(); });
}

} // namespace ztv
