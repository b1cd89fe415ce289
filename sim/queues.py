"""Scripts of the print spooler: a queue, and the port that leads to its printer. README.md tells all that one may
say."""

QUEUE = "Office"
DRIVER = "Velnora RV-2160 PCL"
PRINTER = "127.0.0.1"


def queue_script(
    name: str = QUEUE,
    driver: str = DRIVER,
    port: str = "IP_OFFICE",
    jobs: str = "0",
    monitor: str = "TCPMON.DLL",
    address: str | None = PRINTER,
    more_of_queue: str = "",
    more_of_port: str = "",
) -> str:
    """A script with one queue and its port, a standard TCP/IP port unless told otherwise. `address` None leaves that
    key out."""
    lines = [f"[queue {name}]", f"driver = {driver}", f"port = {port}", f"jobs = {jobs}", more_of_queue]
    lines += ["", f"[port {port}]", f"monitor = {monitor}"]
    lines += ["" if address is None else f"address = {address}", more_of_port]
    return "\n".join(lines) + "\n"
