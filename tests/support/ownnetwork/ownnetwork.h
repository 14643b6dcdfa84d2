#ifndef TESTS_SUPPORT_OWNNETWORK_H
#define TESTS_SUPPORT_OWNNETWORK_H

/// Moves the calling process into a network that has nothing but a loopback interface, so that the only
/// cameras are the test's and its addresses are free, whatever else runs. False when the system does not
/// allow it; the process then stays where it was. Only while it has one thread.
bool EnterOwnNetwork();

#endif
