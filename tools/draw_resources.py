#!/usr/bin/python3
"""Draws the pictures in resources/: test card, "no answer" picture, status icons, the toolbar's pictures, program icons.

The pictures are kept in the repository, so nothing needs this script to build; run it after changing a drawing:

    tools/draw_resources.py [FOLDER]

Needs Debian's python3-cairo and the DejaVu fonts (Debian: fonts-dejavu-core). All sizes are in pixels.
"""
import math
import pathlib
import sys

import cairo

WHITE = (1, 1, 1)
INK = (0.07, 0.08, 0.10)


def canvas(width, height):
    surface = cairo.ImageSurface(cairo.FORMAT_ARGB32, width, height)
    return surface, cairo.Context(surface)


def grey(level):
    return (level, level, level)


def box(context, x, y, width, height, color):
    context.rectangle(x, y, width, height)
    context.set_source_rgb(*color)
    context.fill()


def rounded(context, x, y, width, height, radius):
    quarter = math.pi / 2
    context.new_sub_path()
    context.arc(x + width - radius, y + radius, radius, -quarter, 0)
    context.arc(x + width - radius, y + height - radius, radius, 0, quarter)
    context.arc(x + radius, y + height - radius, radius, quarter, 2 * quarter)
    context.arc(x + radius, y + radius, radius, 2 * quarter, 3 * quarter)
    context.close_path()


def centred_text(context, text, x, baseline, size, color, bold=False, spacing=0.0):
    """Writes `text` around x, letter by letter, so that letters can be spaced."""
    weight = cairo.FONT_WEIGHT_BOLD if bold else cairo.FONT_WEIGHT_NORMAL
    context.select_font_face("DejaVu Sans", cairo.FONT_SLANT_NORMAL, weight)
    context.set_font_size(size)
    advances = [context.text_extents(letter).x_advance + spacing for letter in text]
    context.set_source_rgb(*color)
    position = x - (sum(advances) - spacing) / 2
    for letter, advance in zip(text, advances):
        context.move_to(position, baseline)
        context.show_text(letter)
        position += advance


# ---- The test card: 454 × 340 --------------------------------------------------------------------------------------

CARD_WIDTH, CARD_HEIGHT, CELL = 454, 340, 34
CENTRE_X, CENTRE_Y, RADIUS = 227, 170, 153


def card_background(context):
    box(context, 0, 0, CARD_WIDTH, CARD_HEIGHT, grey(0.42))
    context.set_source_rgb(*grey(0.86))
    context.set_line_width(2)
    # The grid's lines lie around the centre, so that both halves are alike.
    for column in range(-6, 7):
        context.move_to(CENTRE_X + CELL * column, 0)
        context.rel_line_to(0, CARD_HEIGHT)
    for row in range(1, CARD_HEIGHT // CELL):
        context.move_to(0, CELL * row)
        context.rel_line_to(CARD_WIDTH, 0)
    context.stroke()
    card_border(context)


def card_border(context):
    """Black and white castles along the edges: what a crooked scaling cuts off is seen at once."""
    depth = 7
    for column in range(-7, 7):
        color = WHITE if column % 2 else INK
        for y in (0, CARD_HEIGHT - depth):
            box(context, CENTRE_X + CELL * column, y, CELL, depth, color)
    for row in range(CARD_HEIGHT // CELL):
        color = WHITE if row % 2 else INK
        for x in (0, CARD_WIDTH - depth):
            box(context, x, CELL * row, depth, CELL, color)


def siemens_star(context, x, y, radius, spokes=16):
    context.arc(x, y, radius, 0, 2 * math.pi)
    context.set_source_rgb(*WHITE)
    context.fill()
    context.set_source_rgb(*INK)
    half = math.pi / spokes / 2
    for spoke in range(spokes):
        angle = 2 * math.pi * spoke / spokes
        context.move_to(x, y)
        context.arc(x, y, radius, angle - half, angle + half)
        context.close_path()
    context.fill()
    context.arc(x, y, radius, 0, 2 * math.pi)
    context.set_line_width(2)
    context.set_source_rgb(*WHITE)
    context.stroke()
    context.arc(x, y, 3, 0, 2 * math.pi)
    context.set_source_rgb(*WHITE)
    context.fill()


def colour_blocks(context):
    """Beside the circle, where a wrong matrix of the colour differences shows as a tint."""
    left, right = CENTRE_X - 6 * CELL, CENTRE_X + 5 * CELL
    for x, upper, lower in ((left, (0.55, 0.38, 0.72), (0.36, 0.55, 0.22)), (right, (0.72, 0.40, 0.36), (0.22, 0.52, 0.58))):
        box(context, x + 1, 3 * CELL + 1, CELL - 2, 2 * CELL - 1, upper)
        box(context, x + 1, 5 * CELL, CELL - 2, 2 * CELL - 1, lower)


def row_of(context, y, height, colors, left=CENTRE_X - RADIUS, width=2 * RADIUS):
    for index, color in enumerate(colors):
        start = left + round(width * index / len(colors))
        end = left + round(width * (index + 1) / len(colors))
        box(context, start, y, end - start, height, color)


def castellation(context, y, height):
    """Slow black and white: smearing shows behind its edges."""
    row_of(context, y, height, [WHITE if index % 2 else INK for index in range(18)])


def wedges(context, y, height):
    """Lines that run together towards the centre: the place where they melt is the resolution in picture lines."""
    box(context, CENTRE_X - RADIUS, y, 2 * RADIUS, height, grey(0.93))
    lines, outer, inner, reach, gap = 7, height - 12, 15, 126, 24
    middle = y + height / 2
    context.set_source_rgb(*INK)
    for side in (-1, 1):
        for index in range(lines):
            far = [(2 * index + edge) / (2 * lines - 1) - 0.5 for edge in (0, 1)]
            context.move_to(CENTRE_X + side * reach, middle + far[0] * outer)
            context.line_to(CENTRE_X + side * gap, middle + far[0] * inner)
            context.line_to(CENTRE_X + side * gap, middle + far[1] * inner)
            context.line_to(CENTRE_X + side * reach, middle + far[1] * outer)
            context.close_path()
    context.fill()
    # The centre mark: a ring and a cross.
    context.set_line_width(2)
    context.arc(CENTRE_X, middle, 13, 0, 2 * math.pi)
    context.stroke()
    for dx, dy in ((18, 0), (0, 18)):
        context.move_to(CENTRE_X - dx, middle - dy)
        context.line_to(CENTRE_X + dx, middle + dy)
    context.stroke()


def gratings(context, y, height):
    """Upright lines of 5, 4, 3, 2 and 1 pixels, coarse to fine."""
    box(context, CENTRE_X - RADIUS, y, 2 * RADIUS, height, grey(0.5))
    section = 52
    start = CENTRE_X - section * 5 // 2
    for index, width in enumerate((5, 4, 3, 2, 1)):
        left = start + index * section
        for x in range(left, left + section, 2 * width):
            box(context, x, y, min(width, left + section - x), height, INK)
            box(context, x + width, y, max(0, min(width, left + section - x - width)), height, WHITE)


def draw_test_card():
    surface, context = canvas(CARD_WIDTH, CARD_HEIGHT)
    card_background(context)
    colour_blocks(context)
    for side_x in (-1, 1):
        for side_y in (-1, 1):
            siemens_star(context, CENTRE_X + side_x * 5 * CELL, CENTRE_Y + side_y * 3.5 * CELL, CELL * 0.98)

    context.save()
    context.arc(CENTRE_X, CENTRE_Y, RADIUS, 0, 2 * math.pi)
    context.clip()
    box(context, 0, 0, CARD_WIDTH, CARD_HEIGHT, INK)
    castellation(context, 2 * CELL, 17)
    bars = [(1, 1, 1), (1, 1, 0), (0, 1, 1), (0, 1, 0), (1, 0, 1), (1, 0, 0), (0, 0, 1)]
    row_of(context, 2 * CELL + 17, 68, [tuple(0.75 * part for part in bar) for bar in bars])
    wedges(context, 4 * CELL + 17, CELL + 17)
    gratings(context, 6 * CELL, 28)
    row_of(context, 6 * CELL + 28, CELL, [grey(step / 7) for step in range(8)])
    box(context, 0, 7 * CELL + 28, CARD_WIDTH, CARD_HEIGHT, (0.07, 0.08, 0.10))
    context.restore()

    centred_text(context, "Orbelcast", CENTRE_X, 54, 25, WHITE, bold=True, spacing=0.6)
    centred_text(context, "no picture", CENTRE_X, 290, 14, (0.97, 0.83, 0.40), spacing=0.8)

    context.new_path()
    context.arc(CENTRE_X, CENTRE_Y, RADIUS, 0, 2 * math.pi)
    context.set_line_width(3)
    context.set_source_rgb(*WHITE)
    context.stroke()
    return surface


# ---- "No answer": 100 × 100, painted over whatever picture is there ------------------------------------------------

def draw_no_answer():
    surface, context = canvas(100, 100)
    rounded(context, 1, 1, 98, 98, 16)
    context.set_source_rgba(0.10, 0.11, 0.14, 0.92)
    context.fill()
    rounded(context, 2.5, 2.5, 95, 95, 14.5)
    context.set_line_width(2)
    context.set_source_rgba(1, 1, 1, 0.35)
    context.stroke()

    camera = grey(0.93)
    rounded(context, 16, 32, 46, 34, 6)
    context.set_source_rgb(*camera)
    context.fill()
    context.move_to(65, 45)
    context.line_to(83, 34)
    context.line_to(83, 64)
    context.line_to(65, 53)
    context.close_path()
    context.set_line_join(cairo.LINE_JOIN_ROUND)
    context.set_line_width(4)
    context.fill_preserve()
    context.stroke()
    for radius, color in ((10, (0.10, 0.11, 0.14)), (6, (0.30, 0.34, 0.42))):
        context.arc(39, 49, radius, 0, 2 * math.pi)
        context.set_source_rgb(*color)
        context.fill()

    # The bar that crosses it out, with a dark edge that parts it from the camera.
    context.set_line_cap(cairo.LINE_CAP_ROUND)
    for width, color in ((15, (0.10, 0.11, 0.14)), (7.5, (0.93, 0.23, 0.20))):
        context.move_to(20, 79)
        context.line_to(80, 20)
        context.set_line_width(width)
        context.set_source_rgb(*color)
        context.stroke()
    return surface


# ---- Status icons: 16 × 16, on the strip's pale yellow -------------------------------------------------------------

RED, GREEN, GREY = (0.83, 0.10, 0.10), (0.10, 0.52, 0.18), (0.36, 0.38, 0.42)


def draw_recording():
    surface, context = canvas(16, 16)
    context.arc(8, 8, 6.5, 0, 2 * math.pi)
    shade = cairo.RadialGradient(6, 5.5, 0.5, 8, 8, 6.5)
    shade.add_color_stop_rgb(0, 1.0, 0.45, 0.40)
    shade.add_color_stop_rgb(0.55, 0.88, 0.10, 0.10)
    shade.add_color_stop_rgb(1, 0.70, 0.03, 0.05)
    context.set_source(shade)
    context.fill_preserve()
    context.set_source_rgb(0.50, 0.02, 0.04)
    context.set_line_width(1)
    context.stroke()
    return surface


def draw_stop():
    surface, context = canvas(16, 16)
    rounded(context, 2.5, 2.5, 11, 11, 1.5)
    context.set_source_rgb(0.20, 0.24, 0.34)
    context.fill_preserve()
    context.set_source_rgb(0.08, 0.10, 0.16)
    context.set_line_width(1)
    context.stroke()
    box(context, 4, 4, 8, 1, (0.42, 0.48, 0.62))
    return surface


def plug(context, color, gap):
    """A plug on the left and its socket on the right, `gap` pixels apart, with their cables."""
    context.set_source_rgb(*color)
    context.set_line_width(2)
    context.set_line_cap(cairo.LINE_CAP_BUTT)
    left, right = 8 - gap / 2, 8 + gap / 2
    for start, end in ((0, left - 4), (right + 4, 16)):
        context.move_to(start, 8)
        context.line_to(end, 8)
    context.stroke()
    # Both are round towards their cables and flat where they meet.
    for flat, towards_cable in ((left, math.pi), (right, 0)):
        context.new_sub_path()
        context.arc(flat + math.cos(towards_cable), 8, 4.5, towards_cable - math.pi / 2, towards_cable + math.pi / 2)
        context.close_path()
        context.rectangle(min(flat, flat + math.cos(towards_cable)), 3.5, 1, 9)
        context.fill()
    return left


def draw_connect():
    surface, context = canvas(16, 16)
    plug(context, GREEN, 2)
    return surface


def draw_disconnect():
    surface, context = canvas(16, 16)
    left = plug(context, GREY, 5)
    for y in (5.5, 9.5):
        box(context, left, y, 2, 1, GREY)
    context.set_line_cap(cairo.LINE_CAP_ROUND)
    for width, color in ((4.2, (1, 1, 192 / 255)), (2.2, RED)):
        for start, end in (((10.5, 10.5), (14.5, 14.5)), ((14.5, 10.5), (10.5, 14.5))):
            context.move_to(*start)
            context.line_to(*end)
        context.set_line_width(width)
        context.set_source_rgb(*color)
        context.stroke()
    return surface


# ---- Toolbar pictures: a grid of 16 × 16, eight pixels to a unit ----------------------------------------------------
#
# Edges lie on whole or half units, so that a picture is sharp at 16, 32 and 48 pixels. Shapes are ink, which a front end
# may exchange for its own text colour on a dark theme; an accent colour marks what is special about a command and stays.
# Nothing is white: what lies inside a shape is cut out of it.

TOOL_UNITS, TOOL_SCALE = 16, 8
TOOL_INK = (0.16, 0.18, 0.21)
TOOL_RED, TOOL_BLUE, TOOL_AMBER, TOOL_GREEN = (0.88, 0.20, 0.18), (0.13, 0.47, 0.86), (0.92, 0.60, 0.05), (0.13, 0.62, 0.30)


class Tool:
    """One toolbar picture, drawn in units of the grid."""

    def __init__(self):
        self.surface, self.context = canvas(TOOL_UNITS * TOOL_SCALE, TOOL_UNITS * TOOL_SCALE)
        self.context.scale(TOOL_SCALE, TOOL_SCALE)
        self.context.set_line_cap(cairo.LINE_CAP_ROUND)
        self.context.set_line_join(cairo.LINE_JOIN_ROUND)

    def paint(self, color, width=None):
        """Fills the path, or strokes it `width` wide; None as a colour cuts it out."""
        context = self.context
        context.set_operator(cairo.OPERATOR_CLEAR if color is None else cairo.OPERATOR_OVER)
        context.set_source_rgb(*(color or INK))
        if width is None:
            context.fill()
        else:
            context.set_line_width(width)
            context.stroke()
        context.set_operator(cairo.OPERATOR_OVER)

    def box(self, x, y, width, height, color=TOOL_INK, radius=0.0, stroke=None):
        if radius:
            rounded(self.context, x, y, width, height, radius)
        else:
            self.context.rectangle(x, y, width, height)
        self.paint(color, stroke)

    def disc(self, x, y, radius, color=TOOL_INK, stroke=None):
        self.context.new_sub_path()
        self.context.arc(x, y, radius, 0, 2 * math.pi)
        self.paint(color, stroke)

    def polygon(self, points, color=TOOL_INK, soft=1.0):
        """A filled shape whose corners are `soft` units round."""
        for index, point in enumerate(points):
            (self.context.line_to if index else self.context.move_to)(*point)
        self.context.close_path()
        path = self.context.copy_path()
        self.paint(color)
        self.context.append_path(path)
        self.paint(color, soft)

    def line(self, points, color=TOOL_INK, width=2.0):
        for index, point in enumerate(points):
            (self.context.line_to if index else self.context.move_to)(*point)
        self.paint(color, width)

    def arc(self, x, y, radius, start, end, color=TOOL_INK, width=2.0):
        """An arc from `start` to `end`, in degrees clockwise from the right."""
        self.context.new_sub_path()
        self.context.arc(x, y, radius, math.radians(start), math.radians(end))
        self.paint(color, width)


def triangle(tool, base, tip, color=TOOL_INK, half=5.0):
    tool.polygon([(base, 8 - half), (tip, 8), (base, 8 + half)], color)


def tool_archive_top(tool):
    tool.box(2, 3, 2, 10, radius=0.5)
    triangle(tool, 13, 6)


def tool_archive_end(tool):
    triangle(tool, 3, 10)
    tool.box(12, 3, 2, 10, radius=0.5)


def tool_reverse_play(tool):
    triangle(tool, 12, 4)


def tool_play(tool):
    triangle(tool, 4, 12)


def tool_stop(tool):
    tool.box(3, 3, 10, 10, radius=1)


def tool_live(tool):
    """A camera on the air: a dot and the waves around it."""
    tool.disc(8, 8, 2.5, TOOL_RED)
    for radius in (5.0, 7.5):
        width = 1.6
        tool.arc(8, 8, radius - width / 2 + 0.3, -42, 42, width=width)
        tool.arc(8, 8, radius - width / 2 + 0.3, 138, 222, width=width)


def tool_information(tool):
    tool.disc(8, 8, 7, TOOL_BLUE)
    tool.disc(8, 4.6, 1.25, None)
    tool.box(7, 7, 2, 5.5, None, radius=0.5)


def tool_search(tool):
    """A magnifying glass over a clock's hands: what is looked for is a time."""
    tool.disc(6.75, 6.75, 4.75, stroke=2)
    tool.line([(10.5, 10.5), (14, 14)], width=2.6)
    tool.line([(6.75, 4.75), (6.75, 6.9), (8.4, 6.9)], TOOL_BLUE, width=1.3)


def film(tool):
    """A strip of film with its holes."""
    tool.box(1, 3, 14, 10, radius=1.5)
    for x in (2.0, 12.5):
        for y in (4.25, 7.25, 10.25):
            tool.box(x, y, 1.5, 1.5, None, radius=0.4)
    tool.box(4.5, 4.5, 7, 7, None)


def tool_save_avi(tool):
    film(tool)
    tool.disc(8, 8, 2.75, TOOL_RED)


def tool_stop_avi(tool):
    film(tool)
    tool.box(5.75, 5.75, 4.5, 4.5, TOOL_RED, radius=0.5)


def tool_snapshot(tool):
    tool.polygon([(5.5, 5), (6.5, 3), (9.5, 3), (10.5, 5)])
    tool.box(1, 4.5, 14, 9, radius=1.5)
    tool.disc(8, 9, 3.25, None)
    tool.disc(8, 9, 2, TOOL_BLUE)
    tool.box(12, 6, 1.5, 1, None, radius=0.3)


def tool_log(tool):
    tool.box(3, 2, 10, 12, radius=1, stroke=1.6)
    for y, end, color in ((5, 10.5, TOOL_BLUE), (8, 10.5, TOOL_INK), (11, 8.5, TOOL_INK)):
        tool.line([(5.5, y), (end, y)], color, width=1.4)


def tool_message(tool):
    tool.box(1, 2, 14, 9.5, radius=2)
    tool.polygon([(4, 11), (8, 11), (4.3, 14)], soft=0.8)
    for x in (4.75, 8, 11.25):
        tool.disc(x, 6.75, 1.1, None)


def tool_input_output(tool):
    """What comes in and what goes out."""
    tool.line([(5, 13), (5, 5)], TOOL_GREEN)
    tool.polygon([(2.5, 5.5), (5, 2.5), (7.5, 5.5)], TOOL_GREEN)
    tool.line([(11, 3), (11, 11)])
    tool.polygon([(8.5, 10.5), (11, 13.5), (13.5, 10.5)])


def tool_alerts(tool):
    context = tool.context
    context.move_to(3, 12)
    context.curve_to(4.6, 10.5, 4, 9, 4, 7)
    context.curve_to(4, 4.4, 5.6, 2.8, 8, 2.8)
    context.curve_to(10.4, 2.8, 12, 4.4, 12, 7)
    context.curve_to(12, 9, 11.4, 10.5, 13, 12)
    context.close_path()
    path = context.copy_path()
    tool.paint(TOOL_AMBER)
    context.append_path(path)
    tool.paint(TOOL_AMBER, 1)
    tool.disc(8, 2.2, 1.2, TOOL_AMBER)
    context.arc(8, 13.3, 2, 0, math.pi)
    context.close_path()
    tool.paint(TOOL_INK)


def tool_full_screen(tool):
    for x, y, dx, dy in ((2, 3, 1, 1), (14, 3, -1, 1), (2, 13, 1, -1), (14, 13, -1, -1)):
        tool.line([(x, y + 3 * dy), (x, y), (x + 3.5 * dx, y)])
    tool.box(5.5, 6, 5, 4, TOOL_BLUE, radius=0.5)


def tool_cameras(tool):
    for x, y, color in ((1, 2, TOOL_INK), (8.5, 2, TOOL_INK), (1, 8.5, TOOL_INK), (8.5, 8.5, TOOL_BLUE)):
        tool.box(x, y, 6.5, 5.5, color, radius=1)


TOOLBAR = {
    "archive_top": tool_archive_top,
    "reverse_play": tool_reverse_play,
    "stop_playing": tool_stop,
    "play": tool_play,
    "archive_end": tool_archive_end,
    "live": tool_live,
    "information": tool_information,
    "search": tool_search,
    "stop_avi": tool_stop_avi,
    "save_avi": tool_save_avi,
    "snapshot": tool_snapshot,
    "log": tool_log,
    "message": tool_message,
    "input_output": tool_input_output,
    "alerts": tool_alerts,
    "full_screen": tool_full_screen,
    "cameras": tool_cameras,
}


def draw_tool(draw):
    tool = Tool()
    draw(tool)
    return tool.surface


# ---- The programs' icon, and the widgets' in a form designer: drawn on 64 × 64 units -------------------------------

ICON_TOP, ICON_BOTTOM = (0.16, 0.42, 0.53), (0.06, 0.20, 0.29)


def icon_screen(context, x, y, width, height):
    rounded(context, x, y, width, height, 3)
    context.set_source_rgb(*grey(0.97))
    context.fill()


def icon_lens(context, x, y, radius):
    for part, color in ((1, ICON_BOTTOM), (0.78, (0.20, 0.52, 0.65)), (0.48, INK)):
        context.arc(x, y, radius * part, 0, 2 * math.pi)
        context.set_source_rgb(*color)
        context.fill()
    context.arc(x - radius * 0.2, y - radius * 0.22, radius * 0.16, 0, 2 * math.pi)
    context.set_source_rgb(*WHITE)
    context.fill()


def icon_ground(context):
    rounded(context, 2, 2, 60, 60, 12)
    ground = cairo.LinearGradient(0, 2, 0, 62)
    ground.add_color_stop_rgb(0, *ICON_TOP)
    ground.add_color_stop_rgb(1, *ICON_BOTTOM)
    context.set_source(ground)
    context.fill()


def icon_record(context, x, y, radius):
    context.arc(x, y, radius, 0, 2 * math.pi)
    context.set_source_rgb(0.86, 0.20, 0.18)
    context.fill()


def icon_program(context):
    icon_ground(context)
    icon_screen(context, 9, 13, 46, 38)
    icon_lens(context, 32, 32, 15)
    icon_record(context, 49, 19, 3.2)


def icon_viewer(context):
    icon_ground(context)
    icon_screen(context, 8, 13, 48, 38)
    icon_lens(context, 32, 32, 15)


def icon_player(context):
    """The list above, the toolbar below."""
    icon_ground(context)
    icon_screen(context, 8, 8, 48, 7)
    icon_screen(context, 8, 18, 48, 27)
    icon_lens(context, 32, 31.5, 11)
    for index in range(5):
        icon_screen(context, 8 + 10 * index, 48, 8, 8)


def draw_icon(draw, size):
    surface, context = canvas(size, size)
    context.scale(size / 64, size / 64)
    draw(context)
    return surface


def draw_icons(folder):
    folder.mkdir(exist_ok=True)
    for size in (32, 48, 64, 128, 256):
        draw_icon(icon_program, size).write_to_png(str(folder / f"orbelcast-player-{size}.png"))
    with cairo.SVGSurface(str(folder / "orbelcast-player.svg"), 64, 64) as surface:
        surface.set_document_unit(cairo.SVG_UNIT_PX)
        icon_program(cairo.Context(surface))
    for name, draw in {"viewer": icon_viewer, "player": icon_player}.items():
        draw_icon(draw, 64).write_to_png(str(folder / f"{name}.png"))


def main():
    default = pathlib.Path(__file__).resolve().parent.parent / "resources"
    folder = pathlib.Path(sys.argv[1]) if len(sys.argv) > 1 else default
    pictures = {
        "test_card": draw_test_card,
        "no_answer": draw_no_answer,
        "recording": draw_recording,
        "stop": draw_stop,
        "connect": draw_connect,
        "disconnect": draw_disconnect,
    }
    for name, draw in pictures.items():
        draw().write_to_png(str(folder / f"{name}.png"))
    toolbar = folder / "toolbar"
    toolbar.mkdir(exist_ok=True)
    for name, draw in TOOLBAR.items():
        draw_tool(draw).write_to_png(str(toolbar / f"{name}.png"))
    draw_icons(folder / "icons")


if __name__ == "__main__":
    main()
