// Decrypts through the C interface of the Linux library (JNA): one message, a damaged one, and a batch.
// examples/README.md shows how to run it.
import com.sun.jna.Library;
import com.sun.jna.Memory;
import com.sun.jna.Native;
import com.sun.jna.NativeLong;
import com.sun.jna.Pointer;
import com.sun.jna.Structure;
import com.sun.jna.Structure.FieldOrder;
import com.sun.jna.ptr.NativeLongByReference;
import com.sun.jna.ptr.PointerByReference;
import java.nio.charset.StandardCharsets;
import java.util.Arrays;
import java.util.HexFormat;
import java.util.List;
import java.util.stream.IntStream;

// The declarations of latchkey.h. NativeLong has the size of size_t on Linux.
interface Latchkey extends Library {
    Latchkey LIBRARY = Native.load("liblatchkey.so.1", Latchkey.class);

    int MD5 = 1;
    int RC2 = 2;

    @FieldOrder({"size", "flags", "hash", "cipher", "provider", "keyBits", "rc2EffectiveBits"})
    class Settings extends Structure {
        public int size;
        public int flags;
        public int hash;
        public int cipher;
        public int provider;
        public int keyBits;
        public int rc2EffectiveBits;

        public Settings() {
            size = size();
        }
    }

    @FieldOrder({"size", "status", "type", "location", "number", "text"})
    class Failure extends Structure {
        public int size;
        public int status;
        public int type;
        public int location;
        public int number;
        public byte[] text = new byte[76];

        public Failure() {
            size = size();
        }
    }

    @FieldOrder({"size", "offsetSize", "count", "offsets", "data", "dataLength"})
    class Records extends Structure {
        public int size;
        public int offsetSize = Long.BYTES;
        public NativeLong count;
        public Pointer offsets;
        public Pointer data;
        public NativeLong dataLength;

        public Records() {
            size = size();
        }
    }

    @FieldOrder({"size", "offsetSize", "offsets", "data", "dataLength", "statuses", "failed"})
    class Results extends Structure {
        public int size;
        public int offsetSize = Long.BYTES;
        public Pointer offsets;
        public Pointer data;
        public NativeLong dataLength;
        public Pointer statuses;
        public NativeLong failed;

        public Results() {
            size = size();
        }
    }

    int latchkey_key_open(Settings settings, byte[] password, NativeLong passwordLength, PointerByReference key,
                          Failure failure);
    int latchkey_key_close(Pointer key);
    int latchkey_decrypt(Pointer key, byte[] input, NativeLong inputLength, byte[] output,
                         NativeLongByReference outputLength, Failure failure);
    int latchkey_decrypt_records(Pointer key, Records records, int threads, Results results, Failure failure);
    String latchkey_status_text(int status);
}

class LatchkeyException extends RuntimeException {
    LatchkeyException(Latchkey.Failure failure) {
        super(Native.toString(failure.text) + " (location " + failure.location + ", number " + failure.number + ")");
    }
}

// Any number of threads may use one key at the same time.
class Key implements AutoCloseable {
    record Result(int status, byte[] plaintext) {}

    private Pointer key;  // null when closed

    Key(Latchkey.Settings settings, byte[] password) {
        var opened = new PointerByReference();
        var failure = new Latchkey.Failure();
        check(Latchkey.LIBRARY.latchkey_key_open(settings, password, new NativeLong(password.length), opened, failure),
              failure);
        key = opened.getValue();
    }

    @Override
    public void close() {
        Latchkey.LIBRARY.latchkey_key_close(key);
        key = null;
    }

    byte[] decrypt(byte[] ciphertext) {
        var plaintext = new byte[ciphertext.length];  // never longer than the ciphertext
        var length = new NativeLongByReference(new NativeLong(plaintext.length));
        var failure = new Latchkey.Failure();
        check(Latchkey.LIBRARY.latchkey_decrypt(key, ciphertext, new NativeLong(ciphertext.length), plaintext, length,
                                                failure), failure);
        return Arrays.copyOf(plaintext, length.getValue().intValue());
    }

    // One call for all records, on all processors. A record that fails has its own status and an empty result.
    List<Result> decryptAll(List<byte[]> ciphertexts) {
        int count = ciphertexts.size();
        // One element more than needed, because Memory refuses size 0.
        long total = ciphertexts.stream().mapToLong(bytes -> bytes.length).sum();
        try (var starts = new Memory((count + 1L) * Long.BYTES); var ends = new Memory((count + 1L) * Long.BYTES);
             var input = new Memory(total + 1); var output = new Memory(total + 1);
             var statuses = new Memory((count + 1L) * Integer.BYTES)) {
            fill(input, starts, ciphertexts);
            var records = new Latchkey.Records();
            records.count = new NativeLong(count);
            records.offsets = starts;
            records.data = input;
            records.dataLength = new NativeLong(total);
            var results = new Latchkey.Results();
            results.offsets = ends;
            results.data = output;
            results.dataLength = new NativeLong(total);
            results.statuses = statuses;
            int status = Latchkey.LIBRARY.latchkey_decrypt_records(key, records, 0, results, null);
            if (status != 0) {
                throw new IllegalStateException(Latchkey.LIBRARY.latchkey_status_text(status));
            }
            return IntStream.range(0, count)
                .mapToObj(i -> new Result(statuses.getInt((long) i * Integer.BYTES), record(output, ends, i)))
                .toList();
        }
    }

    private static void fill(Memory data, Memory offsets, List<byte[]> records) {
        long end = 0;
        offsets.setLong(0, end);
        for (int i = 0; i < records.size(); i++) {
            byte[] bytes = records.get(i);
            data.write(end, bytes, 0, bytes.length);
            end += bytes.length;
            offsets.setLong((i + 1L) * Long.BYTES, end);
        }
    }

    private static byte[] record(Memory data, Memory offsets, int i) {
        long start = offsets.getLong((long) i * Long.BYTES);
        return data.getByteArray(start, (int) (offsets.getLong((i + 1L) * Long.BYTES) - start));
    }

    private static void check(int status, Latchkey.Failure failure) {
        if (status != 0) {
            throw new LatchkeyException(failure);
        }
    }
}

class DecryptRecords {
    private static byte[] bytes(String hex) {
        return HexFormat.of().parseHex(hex);
    }

    private static String text(byte[] bytes) {
        return new String(bytes, StandardCharsets.US_ASCII);
    }

    public static void main(String[] arguments) {
        byte[] message = bytes("DC3D962329DD1B2F");
        byte[] damaged = bytes("DC3D96");
        byte[] second = bytes("21C1EF99E2B02675B4C30F9D98F974F6");

        var settings = new Latchkey.Settings();
        settings.hash = Latchkey.MD5;
        settings.cipher = Latchkey.RC2;
        settings.keyBits = 80;
        try (var key = new Key(settings, "PNEMAIL".getBytes(StandardCharsets.US_ASCII))) {
            System.out.println("text     " + text(key.decrypt(message)));
            try {
                key.decrypt(damaged);
            } catch (LatchkeyException failure) {
                System.out.println("failure  " + failure.getMessage());
            }
            for (var result : key.decryptAll(List.of(message, damaged, second))) {
                System.out.println("record   " + (result.status() == 0
                    ? text(result.plaintext()) : Latchkey.LIBRARY.latchkey_status_text(result.status())));
            }
        }
    }
}
