"""What an administrator goes by, the policies and the page, against the sources: neither can drift from them."""

import re
import unittest
import xml.etree.ElementTree as ElementTree
from pathlib import Path

ROOT = Path(__file__).parents[2]
OTHERS = {"agreement-sample", "bench", "build", "dist", "examples", "sim", "tests"}
SOURCES = {
    path: path.read_text()
    for room in ROOT.iterdir()
    if room.is_dir() and room.name not in OTHERS and not room.name.startswith(".")
    for path in (*room.rglob("*.cpp"), *room.rglob("*.h"))
}
ADMX = (ROOT / "deploy/ZT.admx").read_text()
POLICIES = list(ElementTree.fromstring(ADMX.encode()).iterfind("{*}policies/{*}policy"))
KINDS = {"isOn": "flag", "ReadDword": "enum", "ReadString": "text"}


def in_sources(pattern: str) -> list:
    return [found for text in SOURCES.values() for found in re.findall(pattern, text)]


def values_that_the_code_reads() -> set[tuple[str, str, str]]:
    """Key, name and kind of each value in the administrator's keys."""
    (component,) = in_sources(r'processLogger\.Start\(L"(\w+)"\)')
    values = set()
    for text in SOURCES.values():
        reads = re.findall(r'\b(isOn|Read\w+)\(L"(\w+)"\)', text)
        for literal in re.findall(r'L"(SOFTWARE\\\\Tressil\\\\.*?)"', text):
            key = re.sub(r"\\$", rf"\\{component}", literal.replace("\\\\", "\\"))
            values |= {(key, name, KINDS[how]) for how, name in reads}
    return values


class DeployTest(unittest.TestCase):
    def test_policies_set_what_the_code_reads(self):
        levels = list(in_sources(r"enum class Severity .*?Error = (\d), Warning = (\d), Information = (\d)")[0])
        values = set()
        for policy in POLICIES:
            self.assertEqual(policy.get("class"), "Machine")
            numbers = [number.get("value") for number in policy.iterfind(".//{*}decimal")]
            elements = list(policy.iterfind("{*}elements/*"))
            kinds = [element.tag.partition("}")[2] for element in elements] or ["flag"]
            for kind, element in zip(kinds, elements or [policy]):
                values.add((policy.get("key"), element.get("valueName"), kind))
            self.assertEqual(numbers, levels if "enum" in kinds else ["1", "0"] if "flag" in kinds else [])
        self.assertEqual(values, values_that_the_code_reads())

    def test_each_language_has_all_texts(self):
        for language in ("en-US", "de-DE"):
            tree = ElementTree.parse(ROOT / "deploy" / language / "ZT.adml")
            strings = {entry.get("id"): entry.text for entry in tree.iterfind(".//{*}string")}
            forms = {form.get("id"): form for form in tree.iterfind(".//{*}presentation")}
            self.assertEqual(set(strings), set(re.findall(r"\$\(string\.(\w+)\)", ADMX)))
            self.assertEqual(set(forms), set(re.findall(r"\$\(presentation\.(\w+)\)", ADMX)))
            for policy in POLICIES:
                name = policy.get("name")
                self.assertRegex(strings[f"{name}_Help"], r"(Default|Standard): .*\. (Since v|Seit V)ersion [\d.]+\.$")
                fields = [field.get("refId") for field in forms.get(name, ())]
                self.assertEqual(fields, [element.get("id") for element in policy.iterfind("{*}elements/*")])

    def test_page_has_every_end_error_and_setting(self):
        page = (ROOT / "docs/deploy.md").read_text()
        texts = in_sources(r'"([^"\n]*[Bb]ye~[^"\n]*)"') + in_sources(r'ZT_TRACE\(Error,\s*"([^"]*)"')
        texts += [f"`-{switch}" for switch in in_sources(r'\{L"(\w+)", (?:true|false)\}')]
        texts += [f"`{name}`" for _, name, _ in values_that_the_code_reads()]
        self.assertGreater(len(texts), 50)
        self.assertEqual([text for text in texts if text.strip() not in page], [])
