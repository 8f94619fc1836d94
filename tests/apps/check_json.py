"""Validates a JSON document against a JSON Schema (draft 7) with Debian's python3-jsonschema.

Usage: check_json.py SCHEMA DOCUMENT. Exit 0 valid, 1 invalid (the first errors printed),
77 when jsonschema is not installed.
"""
import json
import sys

try:
    import jsonschema
except ImportError:
    print("python3-jsonschema is not installed")
    sys.exit(77)

schema = json.load(open(sys.argv[1]))
document = json.load(open(sys.argv[2]))
jsonschema.Draft7Validator.check_schema(schema)
errors = sorted(jsonschema.Draft7Validator(schema).iter_errors(document), key=str)
for error in errors[:5]:
    print("/".join(str(part) for part in error.absolute_path) + ": " + error.message[:300])
sys.exit(1 if errors else 0)
