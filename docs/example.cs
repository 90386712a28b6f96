// SPDX-License-Identifier: Apache-2.0
using System;
using System.Globalization;
using System.IO;
using System.Runtime.InteropServices;

static class Example
{
    static IntPtr ProfileFromFile(string path)
    {
        byte[] bytes = File.ReadAllBytes(path);
        IntPtr profile;
        Lumoxa.Fault fault = Lumoxa.Fault.Ready;
        if (Lumoxa.lmx_profile_from_bytes(bytes, (ulong)bytes.Length, out profile, ref fault) != 0)
            throw new InvalidOperationException(path + ": " + fault.Sentence);
        return profile;
    }

    // Rows without gaps of 8-bit pixels, which stay pinned until the handle is freed.
    static Lumoxa.Image PackedImage(GCHandle pinned, int width, int height, int channels)
    {
        return new Lumoxa.Image {
            Size = (uint)Marshal.SizeOf(typeof(Lumoxa.Image)), Sample = Lumoxa.Samples8,
            Data = pinned.AddrOfPinnedObject(), Width = width, Height = height,
            Channels = channels, ChannelStride = 1, PixelStride = channels,
            RowStride = (long)channels * width };
    }

    static byte[] Convert(IntPtr conversion, byte[] picture, int width, int height)
    {
        var inks = new byte[width * height * 4];
        GCHandle from = GCHandle.Alloc(picture, GCHandleType.Pinned);
        GCHandle to = GCHandle.Alloc(inks, GCHandleType.Pinned);
        try
        {
            Lumoxa.Image source = PackedImage(from, width, height, 3);
            Lumoxa.Image destination = PackedImage(to, width, height, 4);
            Lumoxa.Fault fault = Lumoxa.Fault.Ready;
            Lumoxa.Require(Lumoxa.lmx_conversion_run(conversion, ref source, ref destination,
                                                     IntPtr.Zero, ref fault), fault);
            return inks;
        }
        finally
        {
            from.Free();
            to.Free();
        }
    }

    // Prints the inks of four sRGB pixels, 0..255, and of one colour, 0..1.
    static void PrintInks(IntPtr toPress)
    {
        // A picture of two rows: red and white, then gray and black.
        byte[] picture = { 255, 0, 0, 255, 255, 255, 128, 128, 128, 0, 0, 0 };
        byte[] inks = Convert(toPress, picture, 2, 2);
        for (int i = 0; i < inks.Length; i += 4)
            Console.WriteLine("{0} {1} {2} {3}", inks[i], inks[i + 1], inks[i + 2], inks[i + 3]);

        // One colour, exactly.
        float[] orange = { 1.0f, 0.5f, 0.0f };
        var ink = new float[4];
        Lumoxa.Fault fault = Lumoxa.Fault.Ready;
        Lumoxa.Require(Lumoxa.lmx_conversion_pixel(toPress, orange, ink, ref fault), fault);
        Console.WriteLine(string.Format(CultureInfo.InvariantCulture,
                                        "{0:F3} {1:F3} {2:F3} {3:F3}",
                                        ink[0], ink[1], ink[2], ink[3]));
    }

    // Example CMYK-PROFILE
    static int Main(string[] arguments)
    {
        if (arguments.Length != 1 || Lumoxa.lmx_abi_version() != Lumoxa.AbiVersion) return 2;
        var chain = new IntPtr[2];
        IntPtr toPress = IntPtr.Zero;
        try
        {
            Lumoxa.Fault fault = Lumoxa.Fault.Ready;
            Lumoxa.Require(Lumoxa.lmx_profile_named("sRGB", out chain[0], ref fault), fault);
            chain[1] = ProfileFromFile(arguments[0]);
            Lumoxa.Options options;
            Lumoxa.lmx_options_init(out options);
            options.Intent = Lumoxa.Perceptual;
            Lumoxa.Require(Lumoxa.lmx_conversion_create(chain, 2, ref options, out toPress,
                                                        ref fault), fault);
            PrintInks(toPress);
            return 0;
        }
        catch (Exception error)
        {
            Console.Error.WriteLine(error.Message);
            return 1;
        }
        finally
        {
            Lumoxa.lmx_conversion_free(toPress);
            foreach (IntPtr profile in chain) Lumoxa.lmx_profile_free(profile);
        }
    }
}
