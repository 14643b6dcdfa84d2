#ifndef TESTS_SYSTEM_LANES_H
#define TESTS_SYSTEM_LANES_H

#include <QString>
#include <QStringList>

#include <functional>

/// Runs it once for each lane, from 0 up, all of them at the same time in threads of their own: most of the
/// time a test that kills waits for cameras. Returns what went wrong, with the number of the lane; empty when
/// every lane returned an empty text.
QString RunLanes(int nLanes, const std::function<QString(int)> &run);

/// Waits until each camera can be opened, and closes it again: 3 s of heartbeat, and room for a busy machine.
/// Empty, or which one cannot. Any thread.
QString CheckOpenAgain(const QStringList &addresses);

/// The seed of a test that chooses at random: KX_TEST_SEED, or a new one, which is printed.
unsigned int RandomSeed();

#endif
