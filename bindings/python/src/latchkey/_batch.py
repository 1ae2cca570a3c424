"""Many messages in one call."""
from __future__ import annotations

import array
from collections.abc import Callable, Iterable, Sequence
from itertools import accumulate, pairwise
from typing import TYPE_CHECKING, Any, Literal, NamedTuple, Optional, Union

from ._errors import LatchkeyError, check, error_of
from ._latchkey import ffi
from ._native import allocate, input_bytes, struct

if TYPE_CHECKING:
    from _typeshed import ReadableBuffer

    Results = list[Union[bytes, Exception, None]]

Errors = Literal["raise", "null", "return"]


class Records(NamedTuple):
    """Records in one buffer: record i is the bytes from offsets[i] up to offsets[i + 1] of `data`.

    data      the bytes
    offsets   int32 or int64, as in the input; one more than the records
    statuses  int32, a Status for each record
    """

    data: memoryview
    offsets: memoryview
    statuses: memoryview


class Batch(NamedTuple):
    """A call of latchkey_encrypt_records or latchkey_decrypt_records."""

    key: Any
    function: Any
    extra: int  # bytes that a record grows by at most
    threads: int

    def run(self, data: ReadableBuffer, offsets: memoryview) -> tuple[Records, Any]:
        """The results, and the failure of the first record that failed, or None."""
        records, results, failure = struct("latchkey_records"), struct("latchkey_results"), struct("latchkey_failure")
        source, positions, count = input_bytes(data), input_bytes(offsets), len(offsets) - 1
        records.offset_size = results.offset_size = offsets.itemsize
        records.count, records.offsets = count, positions
        records.data, records.data_length = source, len(source)
        # Offsets that leave the buffer are refused, so that there is never more to allocate than this.
        room = min(max(offsets[-1] - offsets[0], 0), len(source)) + self.extra * count
        output, ends, statuses = allocate(room), allocate(len(positions)), allocate(4 * count)
        results.offsets, results.data, results.data_length = ends, output, room
        results.statuses = ffi.cast("int32_t *", statuses)
        check(self.function(self.key, records, self.threads, results, failure), failure)
        return Records(memoryview(ffi.buffer(output, results.data_length)), _view(ends, offsets.format),
                       _view(statuses, "i")), failure if results.failed else None


def _view(memory: Any, item: str) -> memoryview:
    return memoryview(ffi.buffer(memory)).cast(item)


def _first_error(records: Records, failure: Any) -> Exception:
    index = next(index for index, status in enumerate(records.statuses) if status)
    return error_of(failure, index)


def process_buffers(batch: Batch, data: ReadableBuffer, offsets: ReadableBuffer, errors: Errors) -> Records:
    """Key.encrypt_many and Key.decrypt_many with offsets."""
    if errors not in ("raise", "null"):
        raise ValueError(f'errors: {errors!r} is not "raise" or "null"')
    view = memoryview(offsets)
    if view.format not in ("i", "l", "q") or view.ndim != 1 or view.itemsize not in (4, 8):
        raise TypeError('offsets: int32 or int64 is required; of raw bytes memoryview(offsets).cast("i") makes int32')
    if not view:
        raise ValueError("offsets: one more than the records is required, also for no records")
    records, failure = batch.run(data, view)
    if failure and errors == "raise":
        raise _first_error(records, failure)
    return records


def _join(items: Sequence[Any]) -> tuple[bytes, array.array[int]]:
    """The items' bytes and their offsets."""
    data = b"".join(items)
    offsets = array.array("q", accumulate(map(len, items), initial=0))
    if offsets[-1] != len(data):  # an item with elements of several bytes
        offsets = array.array("q", accumulate((memoryview(item).nbytes for item in items), initial=0))
    return data, offsets


def _check_items(items: Sequence[Any]) -> None:
    """Raises for the first record that is neither bytes nor None."""
    for index, item in enumerate(items):
        try:
            b"" if item is None else memoryview(item).cast("B")
        except TypeError:
            raise TypeError(f"record {index}: bytes or None are required, not {type(item).__name__}") from None


def process_list(batch: Batch, records: Iterable[ReadableBuffer | None], errors: Errors,
                 again: Callable[[ReadableBuffer], bytes]) -> Results:
    """Key.encrypt_many and Key.decrypt_many of an iterable. `again` is the operation for one record."""
    if errors not in ("raise", "null", "return"):
        raise ValueError(f'errors: {errors!r} is not "raise", "null" or "return"')
    if isinstance(records, (str, bytes, bytearray, memoryview)):
        raise TypeError(f"a list of records is required, not {type(records).__name__}; one buffer needs offsets")
    items: Sequence[Any] = records if isinstance(records, (list, tuple)) else list(records)
    try:
        data, offsets = _join(items)
        places: Optional[list[int]] = None
    except TypeError:
        _check_items(items)
        places = [index for index, item in enumerate(items) if item is not None]
        data, offsets = _join([items[place] for place in places])
    results, failure = batch.run(data, memoryview(offsets))
    texts = bytes(results.data)
    made: Results = [texts[start:end] for start, end in pairwise(array.array("q", results.offsets.tobytes()))]
    if places is not None:
        made = _spread(made, places, len(items))
    if failure:
        failed = (index for index, status in enumerate(results.statuses) if status)
        _mark_failed(made, items, failed if places is None else map(places.__getitem__, failed), failure, errors, again)
    return made


def _spread(made: Results, places: list[int], count: int) -> Results:
    """The results at their places among `count`, and None at the others."""
    spread: Results = [None] * count
    for place, result in zip(places, made):
        spread[place] = result
    return spread


def _mark_failed(made: Results, items: Sequence[Any], failed: Iterable[int], failure: Any, errors: Errors,
                 again: Callable[[ReadableBuffer], bytes]) -> None:
    """Puts what `errors` says at the places of the records that failed."""
    for index in failed:
        if errors == "raise":
            raise error_of(failure, index)
        made[index] = None if errors == "null" else _outcome(items[index], index, again)


def _outcome(item: ReadableBuffer, index: int, again: Callable[[ReadableBuffer], bytes]) -> bytes | Exception:
    """The exception that the record raises alone: a batch describes only its first failure."""
    try:
        return again(item)
    except LatchkeyError as error:
        error.index = index
        return error.with_traceback(None)
