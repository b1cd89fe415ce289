#!/usr/bin/env python3
"""sbom.py VERSION FOLDER TINYXML2_VERSION: writes the bill of materials of the packages in a folder, as SPDX 2.3 in
JSON, to the standard output: each package with its checksum, what is in it, and what was linked into that.

The versions of the compilers' runtimes are those of this machine's Debian packages; SOURCE_DATE_EPOCH is the time."""

import hashlib
import json
import os
import subprocess
import sys
import time
import uuid
from pathlib import Path

GCC_RUNTIME = "GPL-3.0-or-later WITH GCC-exception-3.1"
WINDOWS_RUNTIME = ("libstdcxx-mingw-w64", "mingw-w64", "winpthreads")
# What the packages are made of: name, license, where it comes from, what is linked in statically or at run time.
OURS, NOWHERE = "MIT", "NOASSERTION"
PARTS = {
    "ZT.exe": (OURS, NOWHERE, ("TinyXML-2", *WINDOWS_RUNTIME), ()),
    "UA.dll": (OURS, NOWHERE, WINDOWS_RUNTIME, ()),
    "ztsnmp.dll": (OURS, NOWHERE, WINDOWS_RUNTIME, ()),
    "libztsnmp.a": (OURS, NOWHERE, (), ()),
    "libztsnmp.so": (OURS, NOWHERE, (), ("libstdcxx",)),
    "TinyXML-2": ("Zlib", "https://github.com/leethomason/tinyxml2", (), ()),
    "libstdcxx-mingw-w64": (GCC_RUNTIME, "https://gcc.gnu.org", (), ()),
    "mingw-w64": ("ZPL-2.1", "https://www.mingw-w64.org", (), ()),
    "winpthreads": ("MIT AND BSD-3-Clause", "https://www.mingw-w64.org", (), ()),
    "libstdcxx": (GCC_RUNTIME, "https://gcc.gnu.org", (), ()),
}
# The Debian packages that parts were taken from.
DEBIAN = {
    "libstdcxx-mingw-w64": "g++-mingw-w64-x86-64-posix",
    "mingw-w64": "mingw-w64-x86-64-dev",
    "winpthreads": "mingw-w64-x86-64-dev",
    "libstdcxx": "libstdc++6",
}
# What is in a package, by the end of its name.
CONTENTS = {
    "-x64.msi": ("ZT.exe",),
    "-windows-x64.zip": ("ztsnmp.dll", "libztsnmp.a"),
    "-x64.zip": ("ZT.exe", "UA.dll"),
    "-linux-x64.tar.gz": ("libztsnmp.so", "libztsnmp.a"),
    ".deb": ("libztsnmp.so", "libztsnmp.a"),
}


def identifier(name: str) -> str:
    return "SPDXRef-" + name.replace("_", "-")


def package(name: str, version: str, license_: str, source: str, **more: object) -> dict[str, object]:
    return {
        "SPDXID": identifier(name),
        "name": name,
        "versionInfo": version,
        "downloadLocation": source,
        "filesAnalyzed": False,
        "licenseConcluded": license_,
        "licenseDeclared": license_,
        "copyrightText": "NOASSERTION",
        "supplier": "Organization: The TOVAgent authors" if license_ == OURS else "NOASSERTION",
    } | more


def relation(one: str, kind: str, other: str) -> dict[str, str]:
    return {"spdxElementId": one, "relationshipType": kind, "relatedSpdxElement": other}


def bill(version: str, folder: Path, tinyxml2: str) -> dict[str, object]:
    packages, relations, digests = [], [], ""
    for file in sorted(folder.iterdir()):
        ends = [end for end in CONTENTS if file.name.endswith(end)]
        if not ends:
            continue
        digest = hashlib.sha256(file.read_bytes()).hexdigest()
        digests += digest
        checksums = [{"algorithm": "SHA256", "checksumValue": digest}]
        packages.append(package(file.name, version, OURS, NOWHERE, packageFileName=file.name, checksums=checksums))
        relations.append(relation("SPDXRef-DOCUMENT", "DESCRIBES", identifier(file.name)))
        relations += [relation(identifier(file.name), "CONTAINS", identifier(part)) for part in CONTENTS[ends[0]]]

    for name, (license_, source, static, dynamic) in PARTS.items():
        of = version if license_ == OURS else tinyxml2 if name == "TinyXML-2" else debian_version(DEBIAN[name])
        packages.append(package(name, of, license_, source))
        relations += [relation(identifier(name), "STATIC_LINK", identifier(other)) for other in static]
        relations += [relation(identifier(name), "DYNAMIC_LINK", identifier(other)) for other in dynamic]

    return {
        "spdxVersion": "SPDX-2.3",
        "dataLicense": "CC0-1.0",
        "SPDXID": "SPDXRef-DOCUMENT",
        "name": f"TOVAgent-{version}",
        "documentNamespace": uuid.uuid5(uuid.NAMESPACE_OID, digests).urn,
        "creationInfo": {
            "created": time.strftime("%FT%TZ", time.gmtime(int(os.environ["SOURCE_DATE_EPOCH"]))),
            "creators": ["Organization: The TOVAgent authors", "Tool: sbom.py"],
        },
        "packages": packages,
        "relationships": relations,
    }


def debian_version(name: str) -> str:
    query = ["dpkg-query", "-W", "-f", "${Version}", name]
    return subprocess.run(query, check=True, stdout=subprocess.PIPE, text=True).stdout


if __name__ == "__main__":
    if len(sys.argv) != 4:
        sys.exit(__doc__)
    print(json.dumps(bill(sys.argv[1], Path(sys.argv[2]), sys.argv[3]), indent=2))
