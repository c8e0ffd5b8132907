# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""The installed description of what --json prints."""

import datetime
import json
import pathlib

import jsonschema

_FILE = pathlib.Path(__file__).parents[2] / "packaging" / "reading.schema.json"
_SCHEMA = json.loads(_FILE.read_text(encoding="utf-8"))
jsonschema.Draft7Validator.check_schema(_SCHEMA)
_FORMATS = jsonschema.FormatChecker(formats=[])


@_FORMATS.checks("date-time", raises=ValueError)
def _is_moment(value):
    """With its offset, as the program writes it; whatever is no text has another rule."""
    return not isinstance(value, str) or datetime.datetime.fromisoformat(value).tzinfo is not None


def assert_valid(report):
    """A key that the description does not have would be news to its readers, too."""
    jsonschema.validate(report, _SCHEMA | {"additionalProperties": False},
                        format_checker=_FORMATS)
