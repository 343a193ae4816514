#pragma once
// The Qt application of the view tests: one per test program, on the offscreen platform, so
// that windows are laid out and painted without a display.
#include <QApplication>
#include <QString>

#include <ostream>

/// The application, created on first use.
QApplication& QtTestApp();

/// Failed expectations print Qt strings as text.
inline void PrintTo(const QString& text, std::ostream* os) {
    *os << '"' << text.toStdString() << '"';
}

/// Runs `act` on the first window of class T that becomes the active modal widget, once the
/// event loop runs (a modal box blocks the caller until it is answered).
template <class T, class F> void WhenModal(F act);

#include <QTimer>

template <class T, class F> void WhenModal(F act) {
    auto* timer = new QTimer;
    timer->setInterval(10);
    QObject::connect(timer, &QTimer::timeout, [timer, act]() mutable {
        if (auto* w = qobject_cast<T*>(QApplication::activeModalWidget())) {
            timer->stop();
            timer->deleteLater();
            act(w);
        }
    });
    timer->start();
}
