"""python3 -m tests.unit.server.with_report_server COMMAND [ARG...]: runs COMMAND beside a report server on port 8080 of
127.0.0.1."""

import subprocess
import sys

from sim.report_server import ReportServer

with ReportServer(port=8080):
    sys.exit(subprocess.run(sys.argv[1:]).returncode)
