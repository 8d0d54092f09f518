#pragma once

class QObject;

namespace tessaly {

// Stops every signal of receiver's descendants from reaching receiver. A widget that handles
// its own children's signals calls it first thing in its destructor: ~QWidget still holds the
// children, and taking the focus from them or hiding them makes them emit (a line edit reports
// a finished entry, a choice its index) when the receiver is no longer the object it was.
void detachChildSignals(QObject *receiver);

} // namespace tessaly
