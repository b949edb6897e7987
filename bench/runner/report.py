"""Tables in markdown, and their place in a page."""


def number(value):
    return "{:,.0f}".format(value) if value >= 100 else "%.3g" % value


def yes(reached):
    return "yes" if reached else "no"


def table(heads, rows):
    rule = "|---|" + "---:|" * (len(heads) - 1) + "\n"
    head, *lines = ["| %s |\n" % " | ".join(cells) for cells in [heads] + rows]
    return "".join([head, rule] + lines)


def put(page, mark, text):
    """Replaces what stands in the page between `<!-- MARK -->` and `<!-- end of MARK -->`."""
    begin, end = "<!-- %s -->" % mark, "<!-- end of %s -->" % mark
    with open(page, encoding="utf-8") as stream:
        content = stream.read()
    before, rest = content.split(begin)
    after = rest.split(end)[1]
    with open(page, "w", encoding="utf-8") as stream:
        stream.write(before + begin + "\n" + text + end + after)
