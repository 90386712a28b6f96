// SPDX-License-Identifier: Apache-2.0
using System;
using System.Globalization;
using System.IO;
using System.Runtime.InteropServices;

// What everyday.c does, from C#.
static class Everyday
{
    const int U8 = 1, U16 = 5, F32 = 9;

    static Lumoxa.Fault fault = Lumoxa.Fault.Ready;

    static void Require(int code)
    {
        Lumoxa.Require(code, fault);
    }

    static IntPtr Named(string name)
    {
        IntPtr profile;
        Require(Lumoxa.lmx_profile_named(name, out profile, ref fault));
        return profile;
    }

    static IntPtr Loaded(byte[] bytes)
    {
        IntPtr profile;
        Require(Lumoxa.lmx_profile_from_bytes(bytes, (ulong)bytes.Length, out profile, ref fault));
        return profile;
    }

    static Lumoxa.Image Pixel(GCHandle data, int sample, int channels)
    {
        return new Lumoxa.Image {
            Size = (uint)Marshal.SizeOf(typeof(Lumoxa.Image)), Sample = sample,
            Data = data.AddrOfPinnedObject(), Width = 1, Height = 1, Channels = channels,
            ChannelStride = sample == U8 ? 1 : sample == U16 ? 2 : 4
        };
    }

    // Converts one pixel between two profiles; returns the code of the run. Takes the profiles over.
    static int Convert(IntPtr from, IntPtr to, Array pixel, int sample, Array result, int resultSample)
    {
        Lumoxa.Options options;
        Lumoxa.lmx_options_init(out options);
        IntPtr conversion;
        Require(Lumoxa.lmx_conversion_create(new[] { from, to }, 2, ref options, out conversion,
                                             ref fault));
        GCHandle source = GCHandle.Alloc(pixel, GCHandleType.Pinned);
        GCHandle target = GCHandle.Alloc(result, GCHandleType.Pinned);
        Lumoxa.Image sourceView = Pixel(source, sample, pixel.Length);
        Lumoxa.Image targetView = Pixel(target, resultSample, result.Length);
        int code = Lumoxa.lmx_conversion_run(conversion, ref sourceView, ref targetView,
                                             IntPtr.Zero, ref fault);
        source.Free();
        target.Free();
        Lumoxa.lmx_conversion_free(conversion);
        Lumoxa.lmx_profile_free(from);
        Lumoxa.lmx_profile_free(to);
        return code;
    }

    static void Print(string format, params object[] values)
    {
        Console.Write(string.Format(CultureInfo.InvariantCulture, format, values) + "\n");
    }

    static int Main(string[] arguments)
    {
        if (arguments.Length != 3) return 2;
        byte[] red = { 200, 30, 60 }, rgb = new byte[3];
        ushort[] gray = { 32768, 32768, 32768 };
        float[] value = new float[3];
        Require(Convert(Named("AdobeRGB"), Named("sRGB"), red, U8, rgb, U8));
        Print("AdobeRGB 200 30 60: sRGB {0} {1} {2}", rgb[0], rgb[1], rgb[2]);
        IntPtr parametric = Loaded(File.ReadAllBytes(arguments[0]));
        Require(Convert(parametric, Named("XYZ"), new byte[] { 10, 10, 10 }, U8, value, F32));
        Print("parametric sRGB 10: Y {0:F5}", value[1]);
        Require(Convert(Named("XYZ"), Named("sRGB"), new byte[] { 123, 128, 105 }, U8, rgb, U8));
        Print("white in bytes of XYZ: sRGB {0} {1} {2}", rgb[0], rgb[1], rgb[2]);
        Require(Convert(Named("sRGB"), Named("Lab"), gray, U16, value, F32));
        Print("mid gray: L* {0:F1}", value[0]);
        IntPtr table = Loaded(File.ReadAllBytes(arguments[2]));
        Require(Convert(table, Named("sRGB"), new byte[] { 255, 255, 255 }, U8, rgb, U8));
        Print("table with matrix and M curves, white: sRGB {0} {1} {2}", rgb[0], rgb[1], rgb[2]);
        IntPtr press = Loaded(File.ReadAllBytes(arguments[1]));
        Print("three channels for four: code {0}", Convert(press, Named("sRGB"), red, U8, rgb, U8));
        Print("{0}", fault.Sentence);
        IntPtr none;
        byte[] junk = { (byte)'j', (byte)'u', (byte)'n', (byte)'k' };
        Print("junk: code {0}", Lumoxa.lmx_profile_from_bytes(junk, 4, out none, ref fault));
        Print("{0}", fault.Sentence);
        return 0;
    }
}
