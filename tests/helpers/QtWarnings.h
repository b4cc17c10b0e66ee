#pragma once

namespace ztv {

// Makes every warning of Qt fail the test in which it comes.
void FailOnQtWarnings();

} // namespace ztv
