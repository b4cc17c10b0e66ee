#pragma once

// Makes every warning of Qt fail the test in which it comes.
void FailOnQtWarnings();
