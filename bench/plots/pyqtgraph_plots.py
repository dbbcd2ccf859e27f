#!/usr/bin/python3
"""The plots benchmark workloads drawn by pyqtgraph, the reference of bench/run plots.

Same window (1200x600), same data, offscreen. A frame is: change the data,
then run the event loop until the plot has painted once. The picture that
matches ours (grid lines on, antialiasing off) is "reference NAME MEDIAN_US";
the same workload as pyqtgraph draws it by default (no grid lines) is NAME-nogrid,
and with antialiasing on NAME-antialias, so that neither setting hides a cost.
"""
import math
import os
import statistics
import sys
import time

os.environ.setdefault("QT_QPA_PLATFORM", "offscreen")

import numpy as np  # noqa: E402
import pyqtgraph as pg  # noqa: E402
from pyqtgraph.Qt import QtCore, QtWidgets  # noqa: E402

WIDTH, HEIGHT = 1200, 600
TREND_TRACES, TREND_POINTS = 9, 2000
START_TIME = 1_700_000_000.0


class PaintCounter(QtCore.QObject):
    def __init__(self):
        super().__init__()
        self.count = 0

    def eventFilter(self, obj, event):
        if event.type() == QtCore.QEvent.Type.Paint:
            self.count += 1
        return False


def spectrum_values(n, frame):
    i = np.arange(n, dtype=np.float64)
    return (50.0 + 40.0 * np.sin(i * 0.013 + frame * 0.2) +
            5.0 * np.sin(i * 0.37 + frame)).astype(np.float32)


GRID = {"on": True}


def make_window(app, axis_items=None):
    pw = pg.PlotWidget(axisItems=axis_items)
    pw.resize(WIDTH, HEIGHT)
    pw.showGrid(x=GRID["on"], y=GRID["on"])
    pw.show()
    app.processEvents()
    counter = PaintCounter()
    pw.viewport().installEventFilter(counter)
    return pw, counter


def paint_once(app, counter):
    before = counter.count
    for _ in range(1000):
        app.processEvents()
        if counter.count > before:
            return
    raise RuntimeError("the plot never painted")


def run_frames(app, counter, frames, step):
    for f in range(5):  # warm-up
        step(f)
        paint_once(app, counter)
    times = []
    for f in range(frames):
        t0 = time.perf_counter()
        step(f + 5)
        paint_once(app, counter)
        times.append((time.perf_counter() - t0) * 1e6)
    return statistics.median(times)


def spectrum(app, n, frames):
    pw, counter = make_window(app)
    pw.setXRange(-0.2, n - 1 + 0.2, padding=0)
    pw.setYRange(0, 100, padding=0)
    pw.getPlotItem().vb.disableAutoRange()
    x = np.arange(n, dtype=np.float64)
    curve = pw.plot(x, spectrum_values(n, 0), pen=pg.mkPen((0, 128, 0), width=1))
    data = [spectrum_values(n, f) for f in range(8)]

    def step(f):
        curve.setData(x, data[f % len(data)])

    median = run_frames(app, counter, frames, step)
    pw.close()
    return median


def trend(app, frames):
    pw, counter = make_window(app, {"bottom": pg.DateAxisItem(orientation="bottom")})
    vb = pw.getPlotItem().vb
    vb.disableAutoRange()
    pw.setYRange(-12, 12, padding=0)
    t = START_TIME + np.arange(TREND_POINTS, dtype=np.float64)
    ys = [np.sin(t * 0.01 + k) * 10.0 for k in range(TREND_TRACES)]
    colours = [(0, 0, 128), (128, 0, 0), (192, 0, 0), (0, 0, 255), (255, 0, 0),
               (0, 255, 0), (255, 128, 0), (255, 0, 255), (255, 128, 255)]
    curves = [pw.plot(t, ys[k], pen=pg.mkPen(colours[k], width=1)) for k in range(TREND_TRACES)]
    state = {"t": t}

    def step(f):
        t = state["t"]
        now = t[-1] + 1.0
        t = np.append(t[1:], now)
        state["t"] = t
        for k in range(TREND_TRACES):
            y = np.append(ys[k][1:], 10.0 * math.sin(now * 0.01 + k))
            ys[k] = y
            curves[k].setData(t, y)
        pw.setXRange(t[0], t[-1], padding=0)

    median = run_frames(app, counter, frames, step)
    pw.close()
    return median


def main():
    frames = int(sys.argv[1]) if len(sys.argv) > 1 else 200
    app = QtWidgets.QApplication(sys.argv[:1])
    # (suffix, grid lines, antialiasing); pyqtgraph's options apply to items made afterwards.
    for suffix, grid, antialias in (("", True, False), ("-nogrid", False, False), ("-antialias", True, True)):
        GRID["on"] = grid
        pg.setConfigOptions(antialias=antialias)
        print(f"reference spectrum-8000{suffix} {spectrum(app, 8000, frames):.1f}", flush=True)
        print(f"reference spectrum-64000{suffix} {spectrum(app, 64000, max(frames // 4, 20)):.1f}", flush=True)
        print(f"reference trend-9x2000{suffix} {trend(app, frames):.1f}", flush=True)


if __name__ == "__main__":
    main()
