#!/usr/bin/python3
"""Writes dhcpd.conf from the DHCP server's settings as conf-tool does, without any check.

dhcpd.py /mnt/main/etc/settings/dhcp-server.xml
"""
import pathlib
import sys
import xml.etree.ElementTree as ElementTree

import jinja2

settings = ElementTree.parse(sys.argv[1]).getroot()
types = {}
for option in settings.iter("option"):
    if "num" in option.attrib:
        types.setdefault(option.get("num"), option.get("type"))
folder = pathlib.Path(__file__).parent
environment = jinja2.Environment(loader=jinja2.FileSystemLoader(folder), trim_blocks=True, lstrip_blocks=True)
template = environment.get_template("dhcpd.conf.j2")
for piece in template.generate(settings=settings, types=types):
    sys.stdout.write(piece)
