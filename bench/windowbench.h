#ifndef BENCH_WINDOWBENCH_H
#define BENCH_WINDOWBENCH_H

#include <functional>

#include "loopwatch.h"

class MainWidget;

/// Runs the event loop until the condition holds; false after two minutes.
bool Wait(const std::function<bool()> &condition);

/// Prints a row: name, clock and CPU time, and what keeps the window from feeling slow.
void Report(const char *pName, const Span &longest, double limitMs);

/// The number in one of the counts of the result page.
int CountOf(const MainWidget &window, const char *pLabel);

/// Exports the ticked cameras to a folder that is removed again, without waiting for a person in the dialogs.
/// Restarts the watch when the batch begins. False when it does not end.
bool ExportTicked(MainWidget &window, LoopWatch &watch, int nCameras,
                  const std::function<void()> &beforeStart = nullptr);

#endif
