// Decrypts through the C interface of the Linux library (P/Invoke): one message, a damaged one, and a batch.
// examples/README.md shows how to run it.
using System;
using System.Linq;
using System.Runtime.InteropServices;
using System.Text;
using Microsoft.Win32.SafeHandles;

// The declarations of latchkey.h. UIntPtr is C's size_t.
static class Native
{
    const string Library = "liblatchkey.so.1";

    public const int Md5 = 1;
    public const int Rc2 = 2;

    [StructLayout(LayoutKind.Sequential)]
    public struct Settings
    {
        public uint Size, Flags;
        public int Hash, Cipher, Provider;
        public uint KeyBits, Rc2EffectiveBits;
    }

    [StructLayout(LayoutKind.Sequential, CharSet = CharSet.Ansi)]
    public struct Failure
    {
        public uint Size;
        public int Status, Type, Location, Number;
        [MarshalAs(UnmanagedType.ByValTStr, SizeConst = 76)] public string Text;
    }

    [StructLayout(LayoutKind.Sequential)]
    public unsafe struct Records
    {
        public uint Size, OffsetSize;
        public UIntPtr Count;
        public long* Offsets;
        public byte* Data;
        public UIntPtr DataLength;
    }

    [StructLayout(LayoutKind.Sequential)]
    public unsafe struct Results
    {
        public uint Size, OffsetSize;
        public long* Offsets;
        public byte* Data;
        public UIntPtr DataLength;
        public int* Statuses;
        public UIntPtr Failed;
    }

    [DllImport(Library)]
    public static extern int latchkey_key_open(
        ref Settings settings, byte[] password, UIntPtr passwordLength, out KeyHandle key, ref Failure failure);

    [DllImport(Library)]
    public static extern int latchkey_key_close(IntPtr key);

    [DllImport(Library)]
    public static extern int latchkey_decrypt(
        KeyHandle key, byte[] input, UIntPtr length, byte[] output, ref UIntPtr outputLength, ref Failure failure);

    [DllImport(Library)]
    public static extern int latchkey_decrypt_records(
        KeyHandle key, ref Records records, uint threads, ref Results results, IntPtr failure);

    [DllImport(Library)]
    public static extern IntPtr latchkey_status_text(int status);
}

// Closes the key when it is disposed of or collected, and keeps it open during a call.
sealed class KeyHandle : SafeHandleZeroOrMinusOneIsInvalid
{
    KeyHandle() : base(true) { }
    protected override bool ReleaseHandle() => Native.latchkey_key_close(handle) == 0;
}

sealed class LatchkeyException : Exception
{
    public LatchkeyException(Native.Failure failure)
        : base($"{failure.Text} (location {failure.Location}, number {failure.Number})") { }
}

// Any number of threads may use one key at the same time.
sealed class Key : IDisposable
{
    readonly KeyHandle handle;

    public Key(Native.Settings settings, byte[] password)
    {
        settings.Size = (uint)Marshal.SizeOf<Native.Settings>();
        var failure = NewFailure();
        Native.latchkey_key_open(ref settings, password, (UIntPtr)password.Length, out handle, ref failure);
        Check(failure);
    }

    public void Dispose() => handle.Dispose();

    public byte[] Decrypt(byte[] ciphertext)
    {
        var plaintext = new byte[ciphertext.Length];    // never longer than the ciphertext
        var length = (UIntPtr)plaintext.Length;
        var failure = NewFailure();
        Native.latchkey_decrypt(handle, ciphertext, (UIntPtr)ciphertext.Length, plaintext, ref length, ref failure);
        Check(failure);
        Array.Resize(ref plaintext, (int)length);
        return plaintext;
    }

    // One call for all records, on all processors. A record that fails has its own status and an empty result.
    public unsafe byte[][] DecryptAll(byte[][] ciphertexts, out int[] statuses)
    {
        int count = ciphertexts.Length;
        var input = new byte[ciphertexts.Sum(bytes => bytes.Length)];
        var output = new byte[input.Length];
        statuses = new int[count];
        var starts = new long[count + 1];
        var ends = new long[count + 1];
        for (int i = 0; i < count; i++)
        {
            ciphertexts[i].CopyTo(input, starts[i]);
            starts[i + 1] = starts[i] + ciphertexts[i].Length;
        }

        fixed (long* inputOffsets = starts, outputOffsets = ends)
        fixed (byte* inputData = input, outputData = output)
        fixed (int* status = statuses)
        {
            var records = new Native.Records
            {
                Size = (uint)sizeof(Native.Records), OffsetSize = sizeof(long), Count = (UIntPtr)count,
                Offsets = inputOffsets, Data = inputData, DataLength = (UIntPtr)input.Length
            };
            var results = new Native.Results
            {
                Size = (uint)sizeof(Native.Results), OffsetSize = sizeof(long), Offsets = outputOffsets,
                Data = outputData, DataLength = (UIntPtr)output.Length, Statuses = status
            };
            int failed = Native.latchkey_decrypt_records(handle, ref records, 0, ref results, IntPtr.Zero);
            if (failed != 0) throw new InvalidOperationException(StatusText(failed));
        }
        var plaintexts = new byte[count][];
        for (int i = 0; i < count; i++)
        {
            plaintexts[i] = new byte[ends[i + 1] - ends[i]];
            Array.Copy(output, ends[i], plaintexts[i], 0, plaintexts[i].Length);
        }
        return plaintexts;
    }

    public static string StatusText(int status) => Marshal.PtrToStringAnsi(Native.latchkey_status_text(status));

    static Native.Failure NewFailure() => new Native.Failure { Size = (uint)Marshal.SizeOf<Native.Failure>() };

    static void Check(Native.Failure failure)
    {
        if (failure.Status != 0) throw new LatchkeyException(failure);
    }
}

static class DecryptRecords
{
    static readonly byte[] Message = { 0xDC, 0x3D, 0x96, 0x23, 0x29, 0xDD, 0x1B, 0x2F };
    static readonly byte[] Second =
    {
        0x21, 0xC1, 0xEF, 0x99, 0xE2, 0xB0, 0x26, 0x75, 0xB4, 0xC3, 0x0F, 0x9D, 0x98, 0xF9, 0x74, 0xF6
    };
    static readonly byte[] Damaged = { 0xDC, 0x3D, 0x96 };

    static void Main()
    {
        var settings = new Native.Settings { Hash = Native.Md5, Cipher = Native.Rc2, KeyBits = 80 };
        using (var key = new Key(settings, Encoding.ASCII.GetBytes("PNEMAIL")))
        {
            Console.WriteLine("text     " + Encoding.ASCII.GetString(key.Decrypt(Message)));
            try
            {
                key.Decrypt(Damaged);
            }
            catch (LatchkeyException failure)
            {
                Console.WriteLine("failure  " + failure.Message);
            }
            var plaintexts = key.DecryptAll(new[] { Message, Damaged, Second }, out int[] statuses);
            for (int i = 0; i < plaintexts.Length; i++)
            {
                Console.WriteLine("record   " +
                    (statuses[i] == 0 ? Encoding.ASCII.GetString(plaintexts[i]) : Key.StatusText(statuses[i])));
            }
        }
    }
}
