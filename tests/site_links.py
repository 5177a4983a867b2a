#!/usr/bin/env python3
"""Checks that each link of a built site leads to a file of the site, and to an anchor in it.

    site_links.py FOLDER
"""

import html.parser
import pathlib
import sys
import urllib.parse


class Page(html.parser.HTMLParser):
    def __init__(self, text):
        super().__init__()
        self.links = []
        self.anchors = set()
        self.feed(text)

    def handle_starttag(self, tag, attributes):
        for name, value in attributes:
            if name in ("id", "name") and value:
                self.anchors.add(value)
            if name in ("href", "src") and value:
                self.links.append(value)


def main():
    folder = pathlib.Path(sys.argv[1])
    pages = {path.name: Page(path.read_text()) for path in folder.glob("*.html")}
    links = 0
    broken = []
    for name, page in sorted(pages.items()):
        for link in page.links:
            address = urllib.parse.urlsplit(link)
            if address.scheme:
                continue
            links += 1
            target = urllib.parse.unquote(address.path) or name
            if not (folder / target).exists():
                broken.append(f"{name}: no file {target}")
            elif address.fragment and target in pages:
                if urllib.parse.unquote(address.fragment) not in pages[target].anchors:
                    broken.append(f"{name}: no anchor {link}")
    print(*broken, f"{len(pages)} pages, {links} links, {len(broken)} broken", sep="\n")
    sys.exit(1 if broken or links == 0 else 0)


if __name__ == "__main__":
    main()
