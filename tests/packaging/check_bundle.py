"""Checks Hublet.bundle as the MinGW build's release archive holds it: PackageContents.xml is
well-formed, names the product, series and platform 3ds Max 2017 needs, a product code of
this version, and the plug-in as a "plugin parts" component; every file it names is in the
bundle but Hublet.gup, which only the Visual Studio build makes; hublet.exe is there.
Usage: check_bundle.py BUNDLE_FOLDER VERSION"""
import os
import sys
import uuid
import xml.etree.ElementTree as ElementTree

UPGRADE_CODE = "{E074C4C3-6E51-4476-91CE-7316F221CBB1}"  # fixed for every version
PLUGIN = "./Contents/Hublet.gup"


def main(bundle, version):
    problems = []
    root = ElementTree.parse(os.path.join(bundle, "PackageContents.xml")).getroot()
    # A product code of its own for each version, and only for it.
    product_code = "{%s}" % str(uuid.uuid5(uuid.UUID(UPGRADE_CODE), version)).upper()
    expected = {"AutodeskProduct": "3ds Max", "ProductType": "Application", "AppVersion": version,
                "UpgradeCode": UPGRADE_CODE, "ProductCode": product_code}
    problems += [f"ApplicationPackage {k}={root.get(k)!r}, expected {v!r}" for k, v in expected.items() if root.get(k) != v]
    if root.tag != "ApplicationPackage" or root.find("CompanyDetails") is None:
        problems.append("the root is not an ApplicationPackage with CompanyDetails")
    requirements = root.findall(".//RuntimeRequirements")
    if not requirements:
        problems.append("no RuntimeRequirements")
    for r in requirements:
        wanted = {"OS": "Win64", "Platform": "3ds Max", "SeriesMin": "2017", "SeriesMax": "2017"}
        problems += [f"RuntimeRequirements {k}={r.get(k)!r}, expected {v!r}" for k, v in wanted.items() if r.get(k) != v]
    # 3ds Max takes a component's description as its type.
    plugin_parts = [c for c in root.findall("Components")
                    if [e.get("ModuleName") for e in c.iter("ComponentEntry")] == [PLUGIN]]
    if [c.get("Description") for c in plugin_parts] != ["plugin parts"]:
        problems.append(f"not one \"plugin parts\" component with {PLUGIN} alone: "
                        f"{[c.get('Description') for c in plugin_parts]}")
    named = [root.get("HelpFile")] + [e.get("ModuleName") for e in root.iter("ComponentEntry")]
    for path in named:
        if path != PLUGIN and (not path or not os.path.isfile(os.path.join(bundle, path))):
            problems.append(f"named but not in the bundle: {path!r}")
    for path in ("Contents/hublet.exe", "Contents/examples/Vantor.ini", "Contents/README.md",
                 "Contents/docs/preferences.md"):
        if not os.path.isfile(os.path.join(bundle, path)):
            problems.append(f"missing from the bundle: {path}")
    for problem in problems:
        print(problem)
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1], sys.argv[2]))
