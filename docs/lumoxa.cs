// SPDX-License-Identifier: Apache-2.0
using System;
using System.Runtime.InteropServices;
using System.Text;

// What a conversion needs of lumoxa/lmx.h, which tells what each function does.
static class Lumoxa
{
    public const int AbiVersion = 1;
    public const uint Perceptual = 0;
    public const int Samples8 = 1;

    [StructLayout(LayoutKind.Sequential)]
    public struct Fault
    {
        public uint Size;
        public int Code;
        public uint Tag;
        public int ProfileIndex;
        public long Offset;
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = 1000)]
        public byte[] Utf8;

        public static Fault Ready
        {
            get { return new Fault { Size = (uint)Marshal.SizeOf(typeof(Fault)) }; }
        }

        public string Sentence
        {
            get { return Encoding.UTF8.GetString(Utf8, 0, Array.IndexOf(Utf8, (byte)0)); }
        }
    }

    [StructLayout(LayoutKind.Sequential)]
    public struct Options
    {
        public uint Size, Intent;
        public IntPtr Intents;
        public uint IntentCount;
        public int BlackPointCompensation;
        public IntPtr Proof;
        public uint ProofIntent;
        public int MarkOutOfGamut;
        public float GamutMark0, GamutMark1, GamutMark2;
        public int PreserveBlack;
        public float InkLimit;
        public int Exact;
        public IntPtr Tone;
    }

    [StructLayout(LayoutKind.Sequential)]
    public struct Image
    {
        public uint Size;
        public int Sample;
        public IntPtr Data;
        public long Width, Height;
        public int Channels;
        public uint Reserved;
        public long ChannelStride, PixelStride, RowStride;
    }

    const string Library = "lumoxa";  // lumoxa.dll on Windows, liblumoxa.so on Linux

    [DllImport(Library)]
    public static extern int lmx_abi_version();

    [DllImport(Library)]
    public static extern int lmx_profile_from_bytes(byte[] bytes, ulong size, out IntPtr profile,
                                                    ref Fault fault);

    [DllImport(Library, CharSet = CharSet.Ansi)]
    public static extern int lmx_profile_named(string name, out IntPtr profile, ref Fault fault);

    [DllImport(Library)]
    public static extern void lmx_profile_free(IntPtr profile);

    [DllImport(Library)]
    public static extern void lmx_options_init(out Options options);

    [DllImport(Library)]
    public static extern int lmx_conversion_create(IntPtr[] chain, int count, ref Options options,
                                                   out IntPtr conversion, ref Fault fault);

    [DllImport(Library)]
    public static extern int lmx_conversion_run(IntPtr conversion, ref Image source,
                                                ref Image destination, IntPtr runOptions,
                                                ref Fault fault);

    [DllImport(Library)]
    public static extern int lmx_conversion_pixel(IntPtr conversion, float[] source,
                                                  [Out] float[] destination, ref Fault fault);

    [DllImport(Library)]
    public static extern void lmx_conversion_free(IntPtr conversion);

    public static void Require(int code, Fault fault)
    {
        if (code != 0) throw new InvalidOperationException(fault.Sentence);
    }
}
