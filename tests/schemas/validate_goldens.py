#!/usr/bin/env python3
"""Checks every JSON output of the golden suite against the published schema of its command, in
one process: the golden test has already made sure that tpcli writes exactly these files. Then
shows that the schemas do refuse a change: a key nobody knows, and each revision's output read
against the other revision's schema.

usage: validate_goldens.py GOLDEN_DIR SCHEMA_DIR
"""
import json
import pathlib
import sys

import jsonschema

SUFFIXES = {"json": [".json"], "json1": [".r1.json"], "json2": [".r2.json"]}


def load_validators(schema_dir):
    schemas = {path.name: json.loads(path.read_text()) for path in schema_dir.glob("*.schema.json")}
    store = {schema["$id"]: schema for schema in schemas.values()}
    validators = {}
    for name, schema in schemas.items():
        jsonschema.Draft202012Validator.check_schema(schema)
        resolver = jsonschema.RefResolver.from_schema(schema, store=store)
        validators[name] = jsonschema.Draft202012Validator(schema, resolver=resolver)
    return validators


def schema_name(command, suffix):
    words = command.split()
    if "field-set" in words:
        kind = words[words.index("field-set") + 1]
        return {"ipv4": "prefix", "ipv6": "prefix"}.get(kind, kind) + "-field-sets.schema.json"
    view = "interface" if "interface" in words else "cpu"
    if words[-1] == "counters":
        return view + "-counters.schema.json"
    return view + (".r1" if suffix == ".r1.json" else ".r2") + ".schema.json"


def golden_outputs(golden_dir):
    """(file, schema name) of every JSON output listed in CASES."""
    for line in (golden_dir / "CASES").read_text().splitlines():
        if not line or line.startswith("#"):
            continue
        state, name, formats, command = line.split(maxsplit=3)
        for fmt in formats.split(","):
            for suffix in SUFFIXES.get(fmt, []):
                yield golden_dir / state / (name + suffix), schema_name(command, suffix)


def errors_of(validator, document):
    return [f"{'/'.join(map(str, error.absolute_path))}: {error.message}"
            for error in validator.iter_errors(document)]


def main(golden_dir, schema_dir):
    validators = load_validators(schema_dir)
    failures = []
    checked = 0
    for path, schema in golden_outputs(golden_dir):
        checked += 1
        for error in errors_of(validators[schema], json.loads(path.read_text())):
            failures.append(f"{path.relative_to(golden_dir)} against {schema}: {error}")

    # A schema that accepts anything would pass the loop above.
    lab = golden_dir / "lab"
    detail = {revision: json.loads((lab / f"interface-detail.{revision}.json").read_text())
              for revision in ("r1", "r2")}
    unknown_key = json.loads(json.dumps(detail["r2"]))
    unknown_key["trafficPolicies"]["edge-in"]["rules"][0]["actions"]["dropped"] = True
    must_refuse = [
        ("a rule action nobody knows", "interface.r2.schema.json", unknown_key),
        ("revision 1 read as revision 2", "interface.r2.schema.json", detail["r1"]),
        ("revision 2 read as revision 1", "interface.r1.schema.json", detail["r2"]),
        ("an interface view read as a CPU view", "cpu.r2.schema.json", detail["r2"]),
    ]
    for what, schema, document in must_refuse:
        if not errors_of(validators[schema], document):
            failures.append(f"{schema} accepts {what}")

    for failure in failures:
        print(failure)
    print(f"{checked} golden JSON outputs checked against {len(validators)} schemas, "
          f"{len(failures)} failures")
    return 1 if failures or checked == 0 else 0


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    sys.exit(main(pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2])))
