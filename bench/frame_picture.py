"""Draws the frames of one opening as a picture (SVG)."""

_WIDTH, _HEIGHT = 720, 190  # of one scale's part
_LEFT, _TOP, _BOTTOM = 44, 30, 34
_LAST_MS, _MOST_MS = 1400, 20


def _x(milliseconds):
    return _LEFT + milliseconds * (_WIDTH - _LEFT - 16) / _LAST_MS


def _y(cost):
    return _HEIGHT - _BOTTOM - min(cost, _MOST_MS) * (_HEIGHT - _TOP - _BOTTOM) / _MOST_MS


def _line(y, colour, dashes=""):
    return (f'<line x1="{_LEFT}" x2="{_WIDTH - 16}" y1="{y:.1f}" y2="{y:.1f}" stroke="{colour}" '
            f'stroke-dasharray="{dashes}"/>')


def _text(x, y, text, anchor="start"):
    return f'<text x="{x:.0f}" y="{y:.0f}" text-anchor="{anchor}">{text}</text>'


def _part(scale, frames, budget):
    floor = _y(0)
    marks = [_text(_LEFT, 18, f"scale {scale}: milliseconds of CPU per frame, {len(frames)} frames"), _line(floor, "#888")]
    for cost in (budget, 16):
        marks += [_line(_y(cost), "#d33", "4 3"), _text(_LEFT - 6, _y(cost) + 4, cost, "end")]
    for moment in range(0, _LAST_MS + 1, 200):
        marks.append(_text(_x(moment), floor + 16, moment, "middle"))
    marks += [f'<rect x="{_x(at) - 2:.1f}" y="{_y(cost):.1f}" width="4" height="{floor - _y(cost):.1f}" '
              f'fill="{"#d33" if cost > 16 else "#2a8a4a"}"/>' for at, cost in frames]
    marks.append(_text(_WIDTH - 16, _HEIGHT - 4, "milliseconds since the pointer arrived", "end"))
    return marks


def draw(openings):
    """The picture of {scale: (frames, budget)}; a frame is (milliseconds since the pointer's arrival,
    milliseconds of CPU), the budget that of 95 % of them."""
    body = []
    for place, (scale, (frames, budget)) in enumerate(sorted(openings.items())):
        shown = [frame for frame in frames if frame[0] <= _LAST_MS]
        body += [f'<g transform="translate(0 {place * _HEIGHT})">', *_part(scale, shown, budget), "</g>"]
    height = len(openings) * _HEIGHT
    return "\n".join([f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {_WIDTH} {height}" '
                      f'width="{_WIDTH}" height="{height}" font-family="sans-serif" font-size="11" fill="#333">',
                      f'<rect width="{_WIDTH}" height="{height}" fill="#fff"/>', *body, "</svg>", ""])
