# SPDX-License-Identifier: Apache-2.0
"""One plot a comparison: bars of its contestants, or lines where it tells a series. SVG that does not change without
the figures."""
import programs


def draw(result, file):
    """False when there is nothing to draw."""
    if not result["series"] and not result["contestants"]:
        return False
    try:
        import matplotlib
    except ImportError:
        raise programs.Broken("matplotlib is not installed: apt-get install python3-matplotlib") from None
    matplotlib.use("svg")
    matplotlib.rcParams.update({"svg.hashsalt": result["name"], "svg.fonttype": "none", "font.size": 9})
    from matplotlib import pyplot

    figure, axes = pyplot.subplots(figsize=(6.4, 3.2), layout="constrained")
    if result["series"]:
        _lines(axes, result)
    else:
        _bars(axes, result)
    file.parent.mkdir(parents=True, exist_ok=True)
    figure.savefig(file, metadata={"Date": None, "Creator": None})
    pyplot.close(figure)
    return True


def _bars(axes, result):
    rows = result["contestants"][::-1]
    rates = [row["rate"] for row in rows]
    medians = [rate["median"] for rate in rates]
    reach = ([rate["median"] - rate["low"] for rate in rates], [rate["high"] - rate["median"] for rate in rates])
    axes.barh([row["name"] for row in rows], medians, xerr=reach, capsize=3, color="#4c78a8", height=0.6)
    axes.set_xlabel(f"{result['unit']}s a second: median, lowest and highest")
    axes.xaxis.set_major_formatter("{x:,.0f}")


def _lines(axes, result):
    for series in result["series"]:
        x, median, low, high = zip(*series["points"])
        reach = ([m - l for m, l in zip(median, low)], [h - m for m, h in zip(median, high)])
        axes.errorbar(x, median, yerr=reach, marker="o", capsize=3, label=series["label"])
    first = result["series"][0]
    axes.set_xlabel(first.get("x", ""))
    axes.set_ylabel(first.get("y", f"{result['unit']}s a second"))
    if first.get("log_x"):
        axes.set_xscale("log", base=2)
        axes.set_xticks([point[0] for point in first["points"]])
        axes.xaxis.set_major_formatter("{x:.0f}")
    axes.yaxis.set_major_formatter("{x:,.0f}")
    axes.set_ylim(bottom=0)
    axes.legend()
