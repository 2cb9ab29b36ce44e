// What the process needs around it before it does anything.
#pragma once

namespace zoomreplay {

/// To be called first. Keeps the numbers of standard streams that are closed from files of ours, so
/// that neither gets what is meant for the other; using such a stream fails. A full disk or a
/// reader that goes away is an unwritable output, and a signal that ends the process leaves no file
/// half written.
void prepareProcess();

}  // namespace zoomreplay
