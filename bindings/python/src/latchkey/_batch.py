"""Many messages in one call."""
from __future__ import annotations

import array
from collections.abc import Callable, Iterable, Iterator, Sequence
from itertools import accumulate, islice, pairwise
from typing import TYPE_CHECKING, Any, Literal, NamedTuple, Union

from ._errors import LatchkeyError, check, error_of
from ._latchkey import ffi
from ._native import allocate, input_bytes, struct

if TYPE_CHECKING:
    from _typeshed import ReadableBuffer

    Results = list[Union[bytes, Exception, None]]
    Single = Callable[[ReadableBuffer], bytes]

# Records of a list that are processed together: few enough to stay in the processor's cache.
_PART = 8192

Errors = Literal["raise", "null", "return"]


class Records(NamedTuple):
    """Records in one buffer: record i is the bytes from offsets[i] up to offsets[i + 1] of `data`.

    data      the bytes
    offsets   int32 or int64, as in the input; one more than there are records
    statuses  int32, a Status for each record
    """

    data: memoryview
    offsets: memoryview
    statuses: memoryview


class Batch(NamedTuple):
    """A call of latchkey_encrypt_records or latchkey_decrypt_records."""

    key: Any
    function: Any
    extra: int  # most bytes that are added to a record
    threads: int

    def run(self, data: ReadableBuffer, offsets: memoryview) -> tuple[Records, Any]:
        """The results, and the failure of the first record that failed, or None."""
        records, results, failure = struct("latchkey_records"), struct("latchkey_results"), struct("latchkey_failure")
        count = records.count = len(offsets) - 1
        records.offset_size = results.offset_size = offsets.itemsize
        with input_bytes(data) as source, input_bytes(offsets) as positions:
            records.offsets, records.data, records.data_length = positions, source, len(source)
            # The library refuses offsets outside the buffer, so no more than this is ever needed.
            room = min(max(offsets[-1] - offsets[0], 0), len(source)) + self.extra * count
            output, ends, statuses = allocate(room), allocate(len(positions)), allocate(4 * count)
            results.offsets, results.data, results.data_length = ends, output, room
            results.statuses = ffi.cast("int32_t *", statuses)
            check(self.function(self.key, records, self.threads, results, failure), failure)
        return Records(memoryview(ffi.buffer(output, results.data_length)), _view(ends, offsets.format),
                       _view(statuses, "i")), failure if results.failed else None


def _view(memory: Any, item: str) -> memoryview:
    return memoryview(ffi.buffer(memory)).cast(item)


def _failed(records: Records) -> Iterator[int]:
    return (index for index, status in enumerate(records.statuses) if status)


def _first_error(records: Records, failure: Any, places: Sequence[int]) -> Exception:
    """The exception of the first record that failed; `places` are the indexes that the caller knows."""
    return error_of(failure, places[next(_failed(records))])


def process_buffers(batch: Batch, data: ReadableBuffer, offsets: ReadableBuffer, errors: Errors) -> Records:
    """Key.encrypt_many and Key.decrypt_many with offsets."""
    if errors not in ("raise", "null"):
        raise ValueError(f'errors: {errors!r} is not "raise" or "null"')
    view = memoryview(offsets)
    if view.format not in ("i", "l", "q") or view.ndim != 1 or view.itemsize not in (4, 8):
        raise TypeError('offsets: int32 or int64 is required; convert raw bytes with memoryview(offsets).cast("i")')
    if not view:
        raise ValueError("offsets: one more than the number of records is required, also for no records")
    records, failure = batch.run(data, view)
    if failure and errors == "raise":
        raise _first_error(records, failure, range(len(records.statuses)))
    return records


def _join(items: Sequence[Any]) -> tuple[bytes, array.array[int]]:
    """The items' bytes and their offsets."""
    data = b"".join(items)
    offsets = array.array("q", accumulate(map(len, items), initial=0))
    if offsets[-1] != len(data):  # an item with elements of several bytes
        offsets = array.array("q", accumulate((memoryview(item).nbytes for item in items), initial=0))
    return data, offsets


def _check_items(items: Sequence[Any], first: int) -> None:
    """Raises for the first record that is neither bytes nor None."""
    for index, item in enumerate(items, first):
        try:
            b"" if item is None else memoryview(item).cast("B")
        except TypeError:
            raise TypeError(f"record {index}: bytes or None are required, not {type(item).__name__}") from None


def process_list(batch: Batch, records: Iterable[ReadableBuffer | None], errors: Errors, again: Single) -> Results:
    """Key.encrypt_many and Key.decrypt_many for an iterable. `again` is the operation for one record."""
    if errors not in ("raise", "null", "return"):
        raise ValueError(f'errors: {errors!r} is not "raise", "null" or "return"')
    if isinstance(records, (str, bytes, bytearray, memoryview)):
        raise TypeError(f"a list of records is required, not {type(records).__name__}; one buffer needs offsets")
    made: Results = []
    source = iter(records)
    while items := list(islice(source, _PART)):
        made += _process_part(batch, items, len(made), errors, again)
    return made


def _process_part(batch: Batch, items: list[Any], first: int, errors: Errors, again: Single) -> Results:
    """The results of the part of the records that begins at index `first`."""
    places: Sequence[int] = range(len(items))
    try:
        data, offsets = _join(items)
    except TypeError:
        _check_items(items, first)
        places = [place for place in places if items[place] is not None]
        data, offsets = _join([items[place] for place in places])
    results, failure = batch.run(data, memoryview(offsets))
    texts = bytes(results.data)
    made: Results = [texts[start:end] for start, end in pairwise(array.array("q", results.offsets.tobytes()))]
    if failure and errors == "raise":
        raise _first_error(results, failure, [first + place for place in places])
    for index in _failed(results) if failure else ():
        made[index] = None if errors == "null" else _outcome(items[places[index]], first + places[index], again)
    return made if len(made) == len(items) else _spread(made, places, len(items))


def _spread(made: Results, places: Sequence[int], count: int) -> Results:
    """A list of `count` items: the results at their places, None elsewhere."""
    spread: Results = [None] * count
    for place, result in zip(places, made):
        spread[place] = result
    return spread


def _outcome(item: ReadableBuffer, index: int, again: Single) -> bytes | Exception:
    """The exception of this record, from processing it alone: a batch describes only its first failure."""
    try:
        return again(item)
    except LatchkeyError as error:
        error.index = index
        return error.with_traceback(None)
