#!/usr/bin/python3
"""What another program makes of a drawing.

judge.py audit FILE          prints "<errors> <entities of model space>"; errors counts what was wrong and what was mended
judge.py resave FILE TARGET  opens, counts as above, and saves under another name
"""
import sys

import ezdxf
from ezdxf import recover


def open_file(path):
    try:
        document = ezdxf.readfile(path)
    except (ezdxf.DXFStructureError, ezdxf.DXFVersionError):
        document, _ = recover.readfile(path)
    return document


def main():
    document = open_file(sys.argv[2])
    auditor = document.audit()
    print(len(auditor.errors) + len(auditor.fixes), len(document.modelspace()))
    for finding in auditor.errors + auditor.fixes:
        print(finding.code, finding.message, file=sys.stderr)
    if sys.argv[1] == "resave":
        document.saveas(sys.argv[3])


main()
