// Generates Presets.fil, and the headers with the numbers of the parameters that code knows, from the
// readable tables. Rejects a table that breaks a condition on which the program or the sensor relies, so that
// a bad edit fails the build and not a machine.

#include "tools/Conditions.h"
#include "tools/PresetsDatabase.h"
#include "tools/RoleHeader.h"
#include "tools/SensorTable.h"
#include "tools/UnitRules.h"

#include <exception>
#include <iostream>
#include <string>
#include <vector>

using namespace ztv;

namespace {

enum Argument { Program, Parameters, Units, Values, Conditions, Presets, FirstHeader };

bool Complain(const std::vector<std::string> &messages) {
    for (const std::string &message : messages) {
        std::cerr << message << "\n";
    }
    return !messages.empty();
}

} // namespace

int main(int argc, char *argv[]) {
    if (argc < FirstHeader || (argc - FirstHeader) % 2 != 0) {
        std::cerr << "Usage: build-presets PARAMETERS.txt UNITS.txt VALUES.txt CONDITIONS.txt PRESETS.fil"
                     " [NAMESPACE HEADER.h]...\n";
        return 1;
    }
    try {
        const SensorTable table(argv[Parameters], argv[Units], argv[Values]);
        std::vector<std::string> messages = BrokenUnitRules(table);
        for (const std::string &message : BrokenConditions(table, argv[Conditions])) {
            messages.push_back(message);
        }
        if (Complain(messages)) {
            return 1;
        }
        WritePresetsDatabase(argv[Presets], table);
        for (int i = FirstHeader; i < argc; i += 2) {
            WriteIfChanged(argv[i + 1], RoleHeader(table, argv[i]));
        }
        return 0;
    } catch (const std::exception &fault) {
        Complain({fault.what()});
        return 1;
    }
}
