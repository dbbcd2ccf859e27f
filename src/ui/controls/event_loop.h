// Yielding to the event loop inside long handlers, so that the window stays
// responsive and live data keep arriving. Handlers that yield must expect
// other handlers (data received, clicks) to run before the call returns.
#pragma once

namespace ui {

// Runs the events that are waiting, then returns. Does nothing before the
// application object exists.
void YieldToEventLoop();

}  // namespace ui
