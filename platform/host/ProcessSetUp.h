#pragma once
// What a host does first thing in its main: have the C library keep its heap in huge pages.
//
// A large model is tens of megabytes of small objects. Every 4 KB page that the process
// touches for the first time costs a page fault, and on a virtual machine a fault can cost as
// much as the work done in the page: opening a model or the first delete of a load case with
// its cascade then spends most of its time in faults. With the heap in huge pages (2 MB, which
// the system gives on request) the same work faults a few dozen times instead of thousands.
// The C library reads this setting only when a program starts, so the program starts itself
// once more with it.
namespace vhost {

/// Starts the program anew with the C library's heap in huge pages, unless it already runs so,
/// was started anew already, or cannot be; returns only when the program is to go on as it is.
/// argv must be main's argument vector.
void HeapInHugePages(char** argv);

/// For a program that runs one command and ends: the memory it frees stays with it for its
/// next allocations, large blocks included, instead of going back to the system, whose fresh
/// pages for the next block would have to be zeroed again. A program that runs long (the
/// desktop host) does not call it, so that closing a large model gives its memory back.
void KeepFreedMemory();

} // namespace vhost
