#pragma once
// Printing on a thread of its own: the main thread asks the module for the next table while
// the last one is formatted and written, so that a large report waits on the slower of the two
// rather than on both in turn.
#include <condition_variable>
#include <deque>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <ostream>
#include <thread>

/// Prints what it is handed, in the order it was handed over, on a thread of its own that
/// alone writes to the stream. What it is handed owns the texts it prints: the printing thread
/// never reads the document or the module.
class CPrintQueue {
public:
    using Piece = std::function<void(std::ostream& out)>;

    /// At most `ahead` pieces wait to be printed; the thread handing them over waits for room,
    /// so that a fast producer does not hold a whole report in memory.
    explicit CPrintQueue(std::ostream& out, size_t ahead = 2);
    /// Prints what was handed over, then ends the thread.
    ~CPrintQueue();
    CPrintQueue(const CPrintQueue&) = delete;
    CPrintQueue& operator=(const CPrintQueue&) = delete;

    /// Hands a piece over; rethrows what ended an earlier piece, which stops the printing.
    void Post(Piece piece);
    /// Hands over a table, which the printing thread prints with PrintTable and then frees.
    template <class Table> void PostTable(Table table) {
        auto owned = std::make_shared<Table>(std::move(table));
        Post([owned](std::ostream& out) { PrintTable(out, *owned); });
    }
    /// Waits until everything handed over is printed; rethrows what ended a piece. When the
    /// stream failed, errno tells why, as after a failed write of the caller's own.
    void Finish();

private:
    void Run();

    std::ostream& m_out;
    const size_t m_ahead;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<Piece> m_pieces;
    bool m_busy = false;
    bool m_closing = false;
    std::exception_ptr m_failure;
    int m_writeError = 0;
    // Last, so that it starts once the rest is in place.
    std::thread m_thread;
};
