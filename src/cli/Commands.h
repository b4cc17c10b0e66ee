#pragma once

#include "cli/Arguments.h"
#include "cli/CommandRun.h"
#include "cli/Failure.h"

namespace ztv {

// Runs the command. With several addresses it runs for each sensor; one that fails doesn't stop the others,
// and the status is that of the first failure. Throws a Failure where nothing can be done at all.
ExitStatus RunCommand(const Arguments &arguments, const Surroundings &around);

// The commands.
ExitStatus Diff(CommandRun &run);
ExitStatus Flash(CommandRun &run);
ExitStatus Get(CommandRun &run);
ExitStatus Info(CommandRun &run);
ExitStatus Load(CommandRun &run);
ExitStatus Parameters(CommandRun &run);
ExitStatus Ports(CommandRun &run);
ExitStatus Reinit(CommandRun &run);
ExitStatus Save(CommandRun &run);
ExitStatus Search(CommandRun &run);
ExitStatus Set(CommandRun &run);
ExitStatus Simulate(CommandRun &run);
ExitStatus Store(CommandRun &run);
ExitStatus Trace(CommandRun &run);
ExitStatus Watch(CommandRun &run);

} // namespace ztv
