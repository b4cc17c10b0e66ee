#pragma once

namespace ztv {

// Makes every warning of Qt fail the running test.
void FailOnQtWarnings();

} // namespace ztv
