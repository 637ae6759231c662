#!/usr/bin/env python3
"""Checks the links of the Markdown pages that git knows: files that are there, headings
that are there. Addresses of the web are left alone. Exit status 1 with a line each."""
import os
import re
import subprocess
import sys

LINK = re.compile(r"\]\(([^)\s]+)\)")
HEADING = re.compile(r"^#+ +(.*)$", re.M)
CODE = re.compile(r"^```.*?^```", re.M | re.S)


def anchors(page):
    """As the forges make them of headings."""
    text = CODE.sub("", open(page, encoding="utf-8").read())
    return {re.sub(r"[^\w\- ]", "", h.lower()).strip().replace(" ", "-")
            for h in HEADING.findall(text)}


def faults(page):
    text = CODE.sub("", open(page, encoding="utf-8").read())
    for link in LINK.findall(text):
        if re.match(r"[a-z]+:", link):
            continue
        path, _, anchor = link.partition("#")
        target = os.path.normpath(os.path.join(os.path.dirname(page), path)) if path else page
        if not os.path.exists(target):
            yield f"{page}: {link} leads nowhere"
        elif anchor and anchor not in anchors(target):
            yield f"{page}: {target} has no heading for #{anchor}"


pages = subprocess.run(["git", "ls-files", "-co", "--exclude-standard", "*.md"], check=True,
                       stdout=subprocess.PIPE, text=True).stdout.split()
found = [fault for page in pages if os.path.exists(page) for fault in faults(page)]
print("\n".join(found), end="\n" if found else "", file=sys.stderr)
sys.exit(1 if found else 0)
